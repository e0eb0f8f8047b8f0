' An exam from its launch to the accepted result, with an outage on the way.
Sub SubmitExam
    Dim launched, question, host, record, later
    Set launched = CreateObject("NorvaKavlor.GradiumExam")
    Require launched.Load(server & "launches/exam_launch.xml", questions, "none"), "loading the launch document"
    Say "  launched for " & launched.StudentFirstName & " " & launched.StudentLastName & ": " & launched.theExam.Title
    launched.theExam.RandomizeQuestions
    For Each question In launched.theExam.Questions
        If question.ID = "SS-009" Then question.Correct = -1 Else question.Correct = 1
        question.Attempts = 1
    Next
    Require launched.theExam.Save(folder & "exams/launched.xml", False), "storing the attempt"

    ' The gradebook is away: nothing is lost. The record goes to a file and is submitted from there later.
    host = launched.SubmitHost
    launched.SubmitHost = "http://127.0.0.1:9/gradebook"
    Require Not launched.Save("", True), "noticing the outage"
    launched.SubmitHost = host
    record = folder & "launches/exam_record.xml"
    Require launched.Save(record, True), "keeping the record"
    Set later = CreateObject("NorvaKavlor.GradiumExam")
    Require later.Load(record, questions, "none"), "loading the record"
    Require later.Save("", True), "submitting the record: " & later.ServerErrorStr
    Say "  result accepted after an outage: " & record
End Sub

' A lesson likewise. Its record does not bring the lesson back, so the lesson is kept beside it.
Sub SubmitLesson
    Dim launched, task, host, record, beside, later, kept
    Set launched = CreateObject("NorvaKavlor.GradiumLesson")
    Require launched.Load(server & "launches/lesson_launch.xml", tasks, "none"), "loading the launch document"
    Set task = launched.theLesson.Tasks(1)
    task.CompletionDate = DateSerial(2026, 11, 10) + TimeSerial(9, 30, 0)
    host = launched.SubmitHost
    launched.SubmitHost = "http://127.0.0.1:9/gradebook"
    Require Not launched.Save("", True), "noticing the outage"
    launched.SubmitHost = host
    record = folder & "launches/lesson_record.xml"
    beside = folder & "launches/lesson_of_record.xml"
    Require launched.Save(record, True), "keeping the record"
    Require launched.theLesson.Save(beside, False), "keeping the lesson"

    Set later = CreateObject("NorvaKavlor.GradiumLesson")
    Set kept = CreateObject("NorvaKavlor.Lesson")
    Require later.Load(record, tasks, "none"), "loading the record"
    Require kept.Load(beside, tasks), "loading the lesson"
    Set later.theLesson = kept
    Require later.Save("", True), "submitting the record: " & later.ServerErrorStr
    Say "  lesson accepted after an outage: " & record
End Sub

Sub Show_gradebook
    Dim security
    Say "Gradebook"
    Set security = CreateObject("NorvaKavlor.Security")
    Require security.Login(server), "the handshake"
    Say "  the server validated the handshake"
    LoadPools server & "curriculum/"
    SubmitExam
    SubmitLesson
End Sub
