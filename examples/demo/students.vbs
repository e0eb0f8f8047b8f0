Sub Show_students
    Dim roster, students, student, errCode, errDesc, sorted, one, names, section
    Say "Students"
    LoadPools folder & "curriculum/"
    For Each roster In Array(folder & "curriculum/students.xml", server & "curriculum/students.xml")
        Set students = CreateObject("NorvaKavlor.Students")
        Set student = CreateObject("NorvaKavlor.Student")
        student.FirstName = "Mila"
        student.LastName = "Nov" & Chr(225) & "k"
        student.Course = "1"
        student.Section = "0"
        student.UserName = "mila"
        student.SetPassword "lighthouse"
        Require student.Validate(courses, errCode, errDesc), "validating a student"
        Require students.AddStudent(roster, student, courses), "adding a student"
        Require students.Authenticate("mila", "lighthouse"), "signing in"
        Require Not students.Authenticate("mila", "Lighthouse"), "refusing another password"
        Set sorted = students.Sort("LastName", "FirstName", "")
        names = ""
        For Each one In sorted
            names = names & " " & one.LastName
        Next
        Say "  " & student.StudentID & " added to " & roster
        Say "   " & names
        Set section = students.Filter("Course", "1", "Section", "0", "", "")
        Require students.LoadWithFilter(roster, courses, "1", "0", ""), "loading a section"
        Require students.DeleteStudent(roster, student, courses), "removing the student"
        Say "    " & section.Count & " of them in the morning section"
    Next
End Sub
