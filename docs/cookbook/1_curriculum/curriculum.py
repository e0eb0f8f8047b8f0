from norvakavlor import Courses, Objective, Objectives, Question, QuestionPool, TextBook, TextBooks

books = TextBooks()
book = TextBook(ID="SHEETS", Title="Spreadsheets from the First Cell")
books.textBooks.Add(book, book.ID)

courses = Courses()
course = courses.Courses[courses.AddCourse("Office Skills")]
course.AddSection("Monday morning")
course.SetTextBook(book)

objectives = Objectives()
objective = Objective(ID="FORMULAS", Module="Spreadsheets", Label="Write and copy formulas")
objectives.Objectives.Add(objective, objective.ID)

pool = QuestionPool()
for number, text in enumerate(["Add up a column", "Copy a formula", "Fix a reference", "Fill a series"], 1):
    question = Question(ID=f"Q-{number}", Text=text, Objective=objective)
    pool.Questions.Add(question, question.ID)

books.Save("textbooks.xml")
courses.Save("courses.xml")
objectives.Save("objectives.xml")
pool.Save("questionpool.xml")
print(f'Course {course.ID} is {course.Name}, with "{course.TextBook.Title}"')
print(f'{len(pool.Questions)} questions on "{objective.Label}"')
