Dim student, roster, one
Set student = CreateObject("NorvaKavlor.Student")
student.FirstName = "Mila"
student.LastName = "Novak"
Set roster = CreateObject("NorvaKavlor.Students")
If Not roster.AddStudent("students.xml", student) Then WScript.Quit 1
For Each one In roster.Students
    WScript.Echo one.StudentID & " " & one.FirstName & " " & one.LastName
Next
