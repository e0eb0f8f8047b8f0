Option Explicit
Dim objectives, pool, students, exam, prefs, question, wrong, student, attempt, right

Set objectives = CreateObject("NorvaKavlor.Objectives")
Set pool = CreateObject("NorvaKavlor.QuestionPool")
Set students = CreateObject("NorvaKavlor.Students")
objectives.Load "objectives.xml"
If Not pool.Load("questionpool.xml", objectives) Or Not students.Load("students.xml") Then
    WScript.Echo CreateObject("NorvaKavlor.Diagnostics").LastReason
    WScript.Quit 1
End If

Set exam = CreateObject("NorvaKavlor.Exam")
exam.ID = "E-SHEETS"
exam.Title = "Spreadsheets, first term"
Set prefs = CreateObject("NorvaKavlor.Preferences")
prefs.TimeLimit = 20 ' minutes
Set exam.Prefs = prefs
For Each question In pool.Questions
    exam.Questions.Add question.Clone, question.ID
Next
exam.Save "sheets_kvqm.xml"

Set wrong = CreateObject("Scripting.Dictionary")
wrong("mila") = "Q-2"
wrong("daniel") = "Q-2 Q-4"
For Each student In students.Students
    Set attempt = CreateObject("NorvaKavlor.Exam")
    attempt.Load "sheets_kvqm.xml", pool
    attempt.StudentID = student.StudentID
    attempt.Started = True
    right = 0
    For Each question In attempt.Questions
        question.Attempts = 1
        If InStr(wrong(student.UserName), question.ID) > 0 Then question.Correct = -1 Else question.Correct = 1
        If question.Correct = 1 Then right = right + 1
    Next
    attempt.PctCorrect = 100 * right / attempt.Questions.Count
    attempt.CompletionDate = "9/21/2026 10:40:00 AM"
    attempt.Save "sheets_kvqm_" & student.StudentID & "_01.xml"
    WScript.Echo student.FirstName & " has " & right & " of " & attempt.Questions.Count & " right"
Next
