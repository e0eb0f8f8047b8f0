Sub Show_exams
    Dim base, directory, exam, question, number, attempt, total, line, authored, attempts, begun, list, students
    Say "Exams"
    LoadPools folder & "curriculum/"
    For Each base In Array(folder, server)
        directory = base & "exams/"
        Set exam = CreateObject("NorvaKavlor.Exam")
        Require exam.Load(directory & "office_kvqm.xml", questions), "loading an exam"
        Require exam.CheckPassword("open sesame"), "opening it by its password"
        Require Not exam.CheckPassword("open"), "refusing another password"
        exam.RandomizeQuestions
        ' The student answers: every second question right, at the first try.
        number = 0
        For Each question In exam.Questions
            question.Correct = (number + 1) Mod 2
            question.Attempts = 1
            number = number + 1
        Next
        exam.Started = True
        exam.StudentID = "SID00002"
        exam.PctCorrect = 50
        attempt = "office_kvqm_" & exam.StudentID & "_01.xml"
        Require exam.Save(directory & attempt, False), "storing the attempt"
        Say "  attempt stored: " & directory & attempt

        ' A server adds up the class of the roster that lies beside its exams.
        Set students = CreateObject("NorvaKavlor.Students")
        Require students.Load(base & "curriculum/students.xml", courses), "loading the roster"
        Require students.Save(directory & "students.xml", courses), "laying the roster beside the exams"
        Set total = CreateObject("NorvaKavlor.Exam")
        total.ExamFileName = "sheets_kvqm.xml"
        Require total.LoadExamSummary(directory & "students.xml", questions, courses, _
            directory & "sheets_kvqm.xml", 1, "1", ""), "adding up the class"
        line = ""
        For Each question In total.Questions
            line = line & " " & question.ID & " " & question.Correct & "/" & question.Attempts
        Next
        Say "    right answers of the class:" & line

        Set authored = exam.GetExams(directory, 1)
        Set attempts = exam.GetExamInfo(directory, "", 2)
        Set begun = exam.GetStudentExams(directory, "SID00001")
        Say "    " & authored.Count & " authored exams, " & attempts.Count & " attempts, " & _
            begun.Count & " exams begun by SID00001"

        Set list = CreateObject("NorvaKavlor.ExamList")
        Require list.Load(directory & "term_kvql.xml", directory), "loading an exam list"
        list.Title = list.Title & " (copy)"
        Require list.Save(directory & "copy_kvql.xml"), "storing an exam list"
        Say "    " & list.Title & ": " & list.Exams.Count & " exams"
    Next
End Sub
