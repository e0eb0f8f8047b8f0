' Eight processes that add students to one roster, which is not there at first. The first argument is a folder; a
' second one is the number that a process got from this script.
Const processes = 8
Const insertions = 50
Dim shell, fileSystem, folder, rosterFile
Set shell = WScript.CreateObject("WScript.Shell")
Set fileSystem = WScript.CreateObject("Scripting.FileSystemObject")
folder = WScript.Arguments(0) & "\"
rosterFile = folder & "roster.xml"

If WScript.Arguments.Count > 1 Then
    AddStudents WScript.Arguments(1)
Else
    StartProcesses
    LookAtRoster AcceptedNames()
    Finish
End If

' Notes the user names whose insertion succeeded, a line each, in a file that is there once all were tried. An
' insertion that raises an error is none that was refused: its line begins with "!".
Sub AddStudents(process)
    Dim number, student, wasAdded, lines, report
    If Not Begins(process) Then Exit Sub
    Do Until fileSystem.FileExists(folder & "go")
        Pause
    Loop
    For number = 1 To insertions
        Set student = CreateObject("NorvaKavlor.Student")
        student.UserName = "p" & process & "n" & number
        wasAdded = False
        On Error Resume Next
        wasAdded = CreateObject("NorvaKavlor.Students").AddStudent(rosterFile, student, Null)
        If Err.Number <> 0 Then lines = lines & "!" & student.UserName & ": " & Err.Number & " " & Err.Description & vbLf
        On Error GoTo 0
        If wasAdded Then lines = lines & student.UserName & vbLf
    Next
    Set report = fileSystem.CreateTextFile(folder & "unfinished" & process, True)
    report.Write lines
    report.Close
    fileSystem.MoveFile folder & "unfinished" & process, folder & "report" & process
End Sub

' Wine's script host now and then ends at once, without a word, when several start in one moment. So the next one
' starts when this one has begun, and who does not begin is started again. All add their students at one time.
Sub StartProcesses
    Dim process, pauses
    For process = 1 To processes
        pauses = 0
        Do Until fileSystem.FileExists(folder & "begun" & process)
            If pauses Mod 50 = 0 Then
                shell.Run "cscript.exe //nologo """ & WScript.ScriptFullName & """ """ & WScript.Arguments(0) & _
                    """ " & process, 0, False
            End If
            pauses = pauses + 1
            Pause
        Loop
    Next
    fileSystem.CreateTextFile(folder & "go", True).Close
End Sub

' False when the number is another process's already.
Function Begins(process)
    On Error Resume Next
    fileSystem.CreateTextFile(folder & "begun" & process, False).Close
    Begins = Err.Number = 0
End Function

' Not every script host can sleep; to start a program that ends at once takes a while, too.
Sub Pause
    shell.Run "cmd.exe /c exit", 0, True
End Sub

' What every process noted, once it came to its end. How long the waits for the lock take is chance: it is the
' runner that loses its patience.
Function AcceptedNames
    Dim process, names, report, line
    names = ""
    For process = 1 To processes
        Do Until fileSystem.FileExists(folder & "report" & process)
            Pause
        Loop
        Set report = fileSystem.OpenTextFile(folder & "report" & process)
        For Each line In Split(report.ReadAll, vbLf)
            If Left(line, 1) = "!" Then
                Check "an insertion raised " & line, False
            ElseIf line <> "" Then
                names = names & line & vbLf
            End If
        Next
        report.Close
    Next
    AcceptedNames = names
End Function

Sub LookAtRoster(accepted)
    Dim roster, name, names, found
    Set roster = CreateObject("NorvaKavlor.Students")
    Equal "the roster loads, with IDs and user names that differ", roster.Load(rosterFile, Null), True
    Equal "it ends unlocked", fileSystem.GetFile(rosterFile).Attributes And 1, 0
    names = Split(accepted, vbLf)
    Equal "as many students as insertions that succeeded", roster.Students.Count, UBound(names)
    Check "at least as many as one process tries succeeded", UBound(names) >= insertions
    found = 0
    For Each name In names
        If name <> "" Then
            If Not roster.MatchUserName(name) Is Nothing Then found = found + 1
        End If
    Next
    Equal "each of them is there", found, UBound(names)
End Sub
