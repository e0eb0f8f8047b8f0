' A school's day on the sample documents, told by a script:
'     cscript //nologo school_day.vbs FOLDER SERVER
' FOLDER holds a copy of the examples, SERVER is the address of a kavlor-server that serves another copy; both
' end in "/". NorvaKavlor.dll is registered before. school_day.cpp tells the same day.

Dim folder, server
If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: cscript //nologo school_day.vbs FOLDER SERVER"
    WScript.Quit 2
End If
folder = WScript.Arguments(0)
server = WScript.Arguments(1)

' Ends the day if something fails.
Sub Require(holds, what)
    If Not holds Then
        WScript.Echo "this should have worked: " & what
        WScript.Quit 1
    End If
End Sub

' The documents that others refer to, loaded in the order of their dependencies.
Dim textBooks, objectives, tasks, questions, courses
Sub LoadCurriculum(directory)
    Set textBooks = CreateObject("NorvaKavlor.TextBooks")
    Set objectives = CreateObject("NorvaKavlor.Objectives")
    Set tasks = CreateObject("NorvaKavlor.TaskPool")
    Set questions = CreateObject("NorvaKavlor.QuestionPool")
    Set courses = CreateObject("NorvaKavlor.Courses")
    Require textBooks.Load(directory & "textbooks.xml"), "loading the textbooks"
    Require objectives.Load(directory & "objectives.xml", textBooks), "loading the objectives"
    Require tasks.Load(directory & "taskpool.xml", objectives), "loading the tasks"
    Require questions.Load(directory & "questionpool.xml", objectives, tasks), "loading the questions"
    Require courses.Load(directory & "courses.xml", textBooks), "loading the courses"
End Sub

' A new student joins the roster on the server and signs in.
Sub Enrol(roster)
    Dim student, students, section
    Set student = CreateObject("NorvaKavlor.Student")
    student.FirstName = "Mila"
    student.LastName = "Nov" & Chr(225) & "k"
    student.Course = "1"
    student.Section = "0"
    student.UserName = "mila"
    student.SetPassword "lighthouse"
    Set students = CreateObject("NorvaKavlor.Students")
    Require students.AddStudent(roster, student, courses), "adding a student"
    WScript.Echo "08:10  Mila " & student.LastName & " joins as " & student.StudentID & ": " & roster
    Require students.Authenticate("mila", "lighthouse"), "signing in"
    Require Not students.Authenticate("mila", "Lighthouse"), "refusing a wrong password"
    Set section = students.Filter("Course", "1", "Section", "0", "", "")
    WScript.Echo "08:15  She signs in, one of " & section.Count & " students on Monday morning"
End Sub

' A student opens the menu with her own copies, finishes a task and saves the lesson.
Sub Learn(directory)
    Dim menu, tutorial, lesson, task, copy
    Set menu = CreateObject("NorvaKavlor.LessonMenu")
    Require menu.Load(directory & "office_lm.xml", directory, tasks, "SID00001", directory), "loading the lesson menu"
    Set tutorial = menu.Tutorials(4)
    Set lesson = tutorial.Lessons(1)
    WScript.Echo "09:00  Ana opens the menu """ & menu.Title & """ and chooses """ & lesson.Title & """"
    Set task = lesson.Tasks("T-OS-03")
    task.CompletionDate = DateSerial(2026, 11, 10) + TimeSerial(9, 30, 0)
    copy = directory & lesson.LessonFilename
    Require lesson.Save(copy, False), "saving the lesson"
    WScript.Echo "09:30  She finishes a task; her copy of the lesson is kept: " & copy
End Sub

' The gradebook launches an exam; the result arrives though the gradebook is away for a while.
Sub TakeExam
    Dim launched, exam, question, right, attempt, host, record, later
    Set launched = CreateObject("NorvaKavlor.GradiumExam")
    Require launched.Load(server & "launches/exam_launch.xml", questions, "none"), "loading the launch document"
    Set exam = launched.theExam
    WScript.Echo "10:00  The gradebook launches """ & exam.Title & """ for " & launched.StudentFirstName & " " & _
        launched.StudentLastName
    exam.RandomizeQuestions
    right = 0
    For Each question In exam.Questions
        question.Attempts = 1
        If question.ID = "SS-009" Then question.Correct = -1 Else question.Correct = 1
        If question.Correct = 1 Then right = right + 1
    Next
    exam.PctCorrect = 100 * right / exam.Questions.Count
    attempt = folder & "exams/launched_kvqm_" & launched.StudentID & "_01.xml"
    Require exam.Save(attempt, False), "storing the attempt"
    WScript.Echo "10:40  She gets " & right & " of " & exam.Questions.Count & " right; the attempt is stored: " & attempt

    host = launched.SubmitHost
    launched.SubmitHost = "http://127.0.0.1:9/gradebook" ' nobody answers there
    Require Not launched.Save("", True), "noticing that the gradebook is away"
    launched.SubmitHost = host
    record = folder & "launches/exam_record.xml"
    Require launched.Save(record, True), "keeping the result"
    WScript.Echo "10:41  The gradebook is away for a while, so the result is kept: " & record

    Set later = CreateObject("NorvaKavlor.GradiumExam")
    Require later.Load(record, questions, "none"), "loading the result"
    Require later.Save("", True), "submitting the result: " & later.ServerErrorStr
    WScript.Echo "11:30  The gradebook is back and accepts the result"
End Sub

' The teacher adds up what a class got right in an exam.
Sub SumUp
    Dim total, question, line
    Set total = CreateObject("NorvaKavlor.Exam")
    Require total.LoadExamSummary(folder & "curriculum/students.xml", questions, courses, _
        folder & "exams/sheets_kvqm.xml", 1, "", ""), "adding up the class"
    For Each question In total.Questions
        If line <> "" Then line = line & ","
        line = line & " " & question.ID & " " & question.Correct & "/" & question.Attempts
    Next
    WScript.Echo "14:00  The class's right answers in the exam sheets_kvqm:" & line
End Sub

' The teacher corrects a textbook for all.
Sub Maintain(location)
    Dim books, book
    Set books = CreateObject("NorvaKavlor.TextBooks")
    Require books.Load(location), "loading the textbooks"
    Set book = books.textBooks("CHARTS")
    book.Title = book.Title & ", second edition"
    Require books.Save(location), "saving the textbooks"
    WScript.Echo "14:30  A textbook gets its new title, """ & book.Title & """: " & location
End Sub

Sub SchoolDay
    Dim security
    Set security = CreateObject("NorvaKavlor.Security")
    Require security.Login(server), "the handshake with the server"
    LoadCurriculum server & "curriculum/"
    WScript.Echo "08:00  The school's curriculum comes from the server: " & courses.Courses.Count & " courses, " & _
        questions.Questions.Count & " questions"
    Enrol server & "curriculum/students.xml"
    Learn server & "lessons/"
    TakeExam
    SumUp
    Maintain server & "curriculum/textbooks.xml"
    WScript.Echo "15:00  The day is done: all documents are stored and the gradebook has the result"
End Sub

' An error inside the day ends it and is seen after it.
On Error Resume Next
SchoolDay
If Err.Number <> 0 Then
    WScript.Echo "error " & Err.Number & " from " & Err.Source & ": " & Err.Description
    WScript.Quit 1
End If
