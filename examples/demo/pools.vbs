' What the other documents refer to, loaded in the order of their dependencies.
Dim textBooks, objectives, tasks, questions, courses

' directory is a folder or a web directory, with "/" at its end.
Sub LoadPools(directory)
    Set textBooks = CreateObject("NorvaKavlor.TextBooks")
    Set objectives = CreateObject("NorvaKavlor.Objectives")
    Set tasks = CreateObject("NorvaKavlor.TaskPool")
    Set questions = CreateObject("NorvaKavlor.QuestionPool")
    Set courses = CreateObject("NorvaKavlor.Courses")
    Require textBooks.Load(directory & "textbooks.xml"), "loading textbooks"
    Require objectives.Load(directory & "objectives.xml", textBooks), "loading objectives"
    Require tasks.Load(directory & "taskpool.xml", objectives), "loading the task pool"
    Require questions.Load(directory & "questionpool.xml", objectives, tasks), "loading the question pool"
    Require courses.Load(directory & "courses.xml", textBooks), "loading courses"
End Sub
