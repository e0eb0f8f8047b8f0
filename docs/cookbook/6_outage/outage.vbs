Option Explicit
Const record = "record_SID00001_E-SHEETS.xml"
Dim server, objectives, pool, launched, question, kept

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
For Each question In launched.theExam.Questions
    question.Attempts = 1
    question.Correct = 1
Next
If Not launched.Save("", True) Then
    WScript.Echo "Not taken (" & launched.ServerErrorStr & "), so it is kept"
    launched.Save record
End If

' Later, perhaps in another script:
Set kept = CreateObject("NorvaKavlor.GradiumExam")
If kept.Load(record, pool, "none") Then
    If kept.Save("", True) Then
        WScript.Echo "Taken: " & kept.theExam.Questions.Count & " answers of " & kept.StudentFirstName
        kept.Delete record
    End If
End If
