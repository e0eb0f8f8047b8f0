Option Explicit
Dim server, http, exam, refusal, part

server = "http://127.0.0.1:8080/"
If WScript.Arguments.Count > 0 Then server = WScript.Arguments(0)
Set http = CreateObject("WinHttp.WinHttpRequest.5.1")

' The answer's text. A document that is a text goes in UTF-8.
Function Ask(endpoint, parameters, document)
    http.Open "POST", server & endpoint & "?" & parameters, False
    http.Send document
    Ask = http.ResponseText
End Function

exam = Ask("LoadKavlorObject.asp", "ObjName=Exam&FileName=sheets_kvqm.xml", "")
exam = Replace(exam, "first term", "spring")
refusal = Ask("SaveKavlorObject.asp", "ObjName=Exam&FileName=spring_kvqm.xml", exam)
If refusal <> "" Then
    WScript.Echo refusal
    WScript.Quit 1
End If
For Each part In Split(Ask("GetTitleFileNames.asp", "ObjName=Exam&ExamType=1", ""), ";")
    If part <> "" Then WScript.Echo part
Next
Ask "DeleteKavlorObject.asp", "ObjName=Exam&FileName=spring_kvqm.xml", ""
Ask "LoadKavlorObject.asp", "ObjName=Exam&FileName=spring_kvqm.xml", ""
If http.Status = 404 Then WScript.Echo "Deleted again"
