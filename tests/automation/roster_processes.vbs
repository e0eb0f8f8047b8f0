' Eight processes that add students to one roster, which is not there at first. The first argument is a folder; a
' second one is the number that a process got from this script.
Const processes = 8
Const insertions = 50
Const patience = 1000
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

' Notes the user names whose insertion succeeded, a line each, in a file that is there once all were tried.
Sub AddStudents(process)
    Dim number, student, accepted, report
    For number = 1 To insertions
        Set student = CreateObject("NorvaKavlor.Student")
        student.UserName = "p" & process & "n" & number
        If CreateObject("NorvaKavlor.Students").AddStudent(rosterFile, student, Null) Then
            accepted = accepted & student.UserName & vbLf
        End If
    Next
    Set report = fileSystem.CreateTextFile(folder & "unfinished" & process, True)
    report.Write accepted
    report.Close
    fileSystem.MoveFile folder & "unfinished" & process, folder & "report" & process
End Sub

Sub StartProcesses
    Dim process
    For process = 1 To processes
        shell.Run "cscript.exe //nologo """ & WScript.ScriptFullName & """ """ & WScript.Arguments(0) & """ " & _
            process, 0, False
    Next
End Sub

' Not every script host can sleep; to start a program that ends at once takes a while, too.
Sub Pause
    shell.Run "cmd.exe /c exit", 0, True
End Sub

' What every process noted, once it came to its end.
Function AcceptedNames
    Dim process, pauses, names, report
    pauses = 0
    names = ""
    For process = 1 To processes
        Do Until fileSystem.FileExists(folder & "report" & process) Or pauses = patience
            Pause
            pauses = pauses + 1
        Loop
        Set report = fileSystem.OpenTextFile(folder & "report" & process)
        names = names & report.ReadAll
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
    Check "at least half of them succeeded", UBound(names) >= processes * insertions / 2
    found = 0
    For Each name In names
        If name <> "" Then
            If Not roster.MatchUserName(name) Is Nothing Then found = found + 1
        End If
    Next
    Equal "each of them is there", found, UBound(names)
End Sub
