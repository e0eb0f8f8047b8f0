Option Explicit
Dim server, objectives, pool, launched, exam, question

server = "http://127.0.0.1:8080/"
If WScript.Arguments.Count > 0 Then server = WScript.Arguments(0)
Set objectives = CreateObject("NorvaKavlor.Objectives")
Set pool = CreateObject("NorvaKavlor.QuestionPool")
objectives.Load "objectives.xml"
pool.Load "questionpool.xml", objectives
Set launched = CreateObject("NorvaKavlor.GradiumExam")
If Not launched.Load(server & "launch.xml", pool, "none") Then
    WScript.Echo CreateObject("NorvaKavlor.Diagnostics").LastReason
    WScript.Quit 1
End If

Set exam = launched.theExam
WScript.Echo launched.StudentFirstName & " is to take """ & exam.Title & """"
For Each question In exam.Questions
    question.Attempts = 1
    question.Correct = 1 ' -1 for a wrong answer
    WScript.Echo question.ID & ": " & question.Text
Next
If launched.Save("", True) Then
    WScript.Echo "The gradebook has the results"
Else
    WScript.Echo "Not taken: " & launched.ServerErrorStr
End If
