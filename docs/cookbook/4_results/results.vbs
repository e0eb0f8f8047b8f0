Option Explicit
Const ExamStudent = 2 ' students' attempts; a script has no enumerations
Dim objectives, pool, courses, students, total, question, student, row

Set objectives = CreateObject("NorvaKavlor.Objectives")
Set pool = CreateObject("NorvaKavlor.QuestionPool")
Set courses = CreateObject("NorvaKavlor.Courses")
Set students = CreateObject("NorvaKavlor.Students")
objectives.Load "objectives.xml"
pool.Load "questionpool.xml", objectives
If Not courses.Load("courses.xml") Or Not students.Load("students.xml") Then
    WScript.Echo CreateObject("NorvaKavlor.Diagnostics").LastReason
    WScript.Quit 1
End If

Set total = CreateObject("NorvaKavlor.Exam")
total.LoadExamSummary "students.xml", pool, courses, "sheets_kvqm.xml", 1, "", ""
For Each question In total.Questions
    WScript.Echo question.ID & ": " & question.Correct & " of " & question.Attempts & " right"
Next

For Each student In students.Sort("LastName", "FirstName", "")
    For Each row In total.GetExamInfo(".\", student.StudentID, ExamStudent)
        WScript.Echo student.LastName & ", attempt " & row.Attempt & ": " & row.PctCorrect & " %"
    Next
Next
