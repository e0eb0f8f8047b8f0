Option Explicit
Dim courses, course, students, student, file, cells, name, added

Set courses = CreateObject("NorvaKavlor.Courses")
If Not courses.Load("courses.xml") Then
    WScript.Echo CreateObject("NorvaKavlor.Diagnostics").LastReason
    WScript.Quit 1
End If
Set course = courses.Courses(1)
Set students = CreateObject("NorvaKavlor.Students")
Set file = CreateObject("Scripting.FileSystemObject").OpenTextFile("class.csv")
file.ReadLine ' the columns' names
Do Until file.AtEndOfStream
    cells = Split(file.ReadLine, ",")
    Set student = CreateObject("NorvaKavlor.Student")
    student.LastName = cells(0)
    student.FirstName = cells(1)
    student.UserName = cells(2)
    student.SetPassword cells(3)
    student.Course = course.ID
    student.Section = course.Sections(1).ID
    name = student.FirstName & " " & student.LastName
    On Error Resume Next
    added = students.AddStudent("students.xml", student, courses)
    If Err.Number <> 0 Then
        WScript.Echo name & " is not added: " & Err.Description
    ElseIf added Then
        WScript.Echo student.StudentID & " " & name
    Else
        WScript.Echo name & " is to be added again: " & CreateObject("NorvaKavlor.Diagnostics").LastReason
    End If
    On Error Goto 0
Loop
