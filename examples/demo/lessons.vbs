Sub Show_lessons
    Dim base, directory, menu, tutorial, lesson, state, ofTutorial, task, authored, open
    Say "Lessons"
    LoadPools folder & "curriculum/"
    For Each base In Array(folder, server)
        directory = base & "lessons/"
        Set menu = CreateObject("NorvaKavlor.LessonMenu")
        Require menu.Load(directory & "office_lm.xml", directory, tasks, "SID00001", directory), _
            "loading a menu with a student's copies"
        Say "  " & menu.Title & ": " & directory
        For Each tutorial In menu.Tutorials
            For Each lesson In tutorial.Lessons
                If lesson.CalcLessonComplete Then state = "complete" Else state = "open"
                Say "    " & tutorial.Title & " - " & lesson.Title & ": " & state & " (" & lesson.LessonFilename & ")"
            Next
        Next
        ' The copy that the menu named comes to be when the student's work is saved under its name.
        Set ofTutorial = menu.Tutorials(4).Lessons
        Set lesson = ofTutorial(1)
        Set task = lesson.Tasks("T-OS-03")
        task.CompletionDate = Now
        Require lesson.Save(directory & lesson.LessonFilename, False), "storing the copy"
        Set authored = lesson.GetLessons(directory, 1)
        Set open = lesson.GetStudentLessons(directory, "SID00001", False, tasks)
        Say "    " & authored.Count & " authored lessons, " & open.Count & " open ones of SID00001"
        Require menu.Save(directory & "copy_lm.xml"), "storing the menu"
    Next
End Sub
