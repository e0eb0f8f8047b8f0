' The main job of the library on the sample documents, as a script does it:
'     cscript //nologo demo.vbs FOLDER SERVER
' FOLDER holds a copy of the examples, SERVER is the address of a kavlor-server that serves another copy.
' NorvaKavlor.dll is registered before. The steps, one file each, stand in front of this one: ./demo puts them together,
' as a script has no way to include another one.

Dim folder, server
If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: cscript //nologo demo.vbs FOLDER SERVER"
    WScript.Quit 2
End If
folder = WScript.Arguments(0)
server = WScript.Arguments(1)

' One line of the account that the demo gives.
Sub Say(line)
    WScript.Echo line
End Sub

' Ends the demo with a message when something that must hold does not.
Sub Require(holds, what)
    If Not holds Then
        WScript.Echo "this should have worked: " & what
        WScript.Quit 1
    End If
End Sub

' Ends the demo when the step before it raised an error.
Sub Check
    If Err.Number <> 0 Then
        WScript.Echo "error " & Err.Number & " from " & Err.Source & ": " & Err.Description
        WScript.Quit 1
    End If
End Sub

' An error inside a step ends the step alone, and is seen behind it.
On Error Resume Next
Show_textbooks
Check
Show_curriculum
Check
Show_students
Check
Show_exams
Check
Show_gradebook
Check
Show_lessons
Check
Show_live_exercise
Check
WScript.Echo "The VBScript client is done."
