Option Explicit
Dim books, book, courses, course, objectives, objective, pool, question, text

Set books = CreateObject("NorvaKavlor.TextBooks")
Set book = CreateObject("NorvaKavlor.TextBook")
book.ID = "SHEETS"
book.Title = "Spreadsheets from the First Cell"
books.textBooks.Add book, book.ID

Set courses = CreateObject("NorvaKavlor.Courses")
Set course = courses.Courses(courses.AddCourse("Office Skills"))
course.AddSection "Monday morning"
course.SetTextBook book

Set objectives = CreateObject("NorvaKavlor.Objectives")
Set objective = CreateObject("NorvaKavlor.Objective")
objective.ID = "FORMULAS"
objective.Module = "Spreadsheets"
objective.Label = "Write and copy formulas"
objectives.Objectives.Add objective, objective.ID

Set pool = CreateObject("NorvaKavlor.QuestionPool")
For Each text In Array("Add up a column", "Copy a formula", "Fix a reference", "Fill a series")
    Set question = CreateObject("NorvaKavlor.Question")
    question.ID = "Q-" & (pool.Questions.Count + 1)
    question.Text = text
    Set question.Objective = objective
    pool.Questions.Add question, question.ID
Next

books.Save "textbooks.xml"
courses.Save "courses.xml"
objectives.Save "objectives.xml"
pool.Save "questionpool.xml"
WScript.Echo "Course " & course.ID & " is " & course.Name & ", with """ & course.TextBook.Title & """"
WScript.Echo pool.Questions.Count & " questions on """ & objective.Label & """"
