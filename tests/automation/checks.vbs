' What every script here begins with: the runner puts this text before it.
Option Explicit

Dim checksDone, checksFailed
checksDone = 0
checksFailed = 0

Sub Check(what, holds)
    checksDone = checksDone + 1
    If Not holds Then
        checksFailed = checksFailed + 1
        WScript.Echo "failed: " & what
    End If
End Sub

Sub Equal(what, got, wanted)
    Dim shown
    If IsNull(got) Then
        shown = "(Null)"
    ElseIf IsEmpty(got) Then
        shown = "(Empty)"
    Else
        shown = CStr(got)
    End If
    Check what & ": " & shown & " instead of " & wanted, shown = CStr(wanted)
End Sub

' To be called right after a statement that is to fail, under On Error Resume Next.
Sub Raised(what, number, source, description)
    Dim gotNumber, gotSource, gotDescription
    gotNumber = Err.Number
    gotSource = Err.Source
    gotDescription = Err.Description
    Err.Clear
    Equal what & ", number", gotNumber, number
    Equal what & ", source", gotSource, source
    Equal what & ", description", gotDescription, description
End Sub

' The runner takes a script for failed that does not come to this line: an error in it says nothing else.
Sub Finish()
    WScript.Echo "finished: " & checksDone & " checks, " & checksFailed & " failed"
End Sub
