Option Explicit
Dim diagnostics, textBooks, objectives, pool

Set diagnostics = CreateObject("NorvaKavlor.Diagnostics")
Set textBooks = CreateObject("NorvaKavlor.TextBooks")
Set objectives = CreateObject("NorvaKavlor.Objectives")
Set pool = CreateObject("NorvaKavlor.QuestionPool")
If Not textBooks.Load("spring/textbooks.xml") Then WScript.Echo "Not loaded: " & diagnostics.LastReason
objectives.Load "spring/objectives.xml", textBooks
On Error Resume Next
pool.Load "spring/questionpool.xml", objectives
If Err.Number <> 0 Then
    WScript.Echo "Error " & (Err.Number And &HFFFF&) & ": " & Err.Description
    WScript.Echo "Where: " & diagnostics.LastReason
    WScript.Echo "Loaded before it: " & pool.Questions.Count
End If
