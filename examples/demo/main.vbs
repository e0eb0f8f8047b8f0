' The main job of the library on the sample documents, as a script does it:
'     cscript //nologo main.vbs FOLDER SERVER
' FOLDER holds a copy of the examples, SERVER is the address of a kavlor-server that serves another copy.
' NorvaKavlor.dll is registered before. Each step beside this file shows one part of the library.
Option Explicit

Dim folder, server, files, here, step
If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: cscript //nologo main.vbs FOLDER SERVER"
    WScript.Quit 2
End If
folder = WScript.Arguments(0)
server = WScript.Arguments(1)
Set files = WScript.CreateObject("Scripting.FileSystemObject")
here = files.GetParentFolderName(WScript.ScriptFullName)

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

Sub Include(name)
    Dim text
    Set text = files.OpenTextFile(here & "\" & name)
    ExecuteGlobal text.ReadAll
    text.Close
End Sub

Include "pools.vbs"
For Each step In Array("textbooks", "curriculum", "students", "exams", "gradebook", "lessons", "live_exercise")
    Include step & ".vbs"
    On Error Resume Next
    ExecuteGlobal "Show_" & step
    If Err.Number <> 0 Then
        WScript.Echo "error " & Err.Number & " from " & Err.Source & ": " & Err.Description
        WScript.Quit 1
    End If
    On Error GoTo 0
Next
WScript.Echo "The VBScript client is done."
