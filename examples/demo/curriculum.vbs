Sub Show_curriculum
    Dim directory, modules, name, ofModule, tasksOfModule, course, theCourse, section, again
    Say "Curriculum"
    For Each directory In Array(folder & "curriculum/", server & "curriculum/")
        LoadPools directory
        Say "  " & directory
        Set modules = questions.GetModules
        For Each name In modules
            Set ofModule = questions.GetQuestionsByModule(name)
            Set tasksOfModule = tasks.GetTasksByModule(name)
            Say "    " & name & ": " & ofModule.Count & " questions, " & tasksOfModule.Count & " tasks"
        Next
        course = courses.AddCourse("Evening Workshop")
        Set theCourse = courses.Courses(course)
        section = theCourse.AddSection("Thursday")
        Say "    new course " & course & " with section " & section
        Require courses.Save(directory & "courses_new.xml"), "saving courses"
        Require objectives.Save(directory & "objectives_new.xml"), "saving objectives"
        Require tasks.Save(directory & "taskpool_new.xml"), "saving the task pool"
        Require questions.Save(directory & "questionpool_new.xml"), "saving the question pool"

        ' What a saved pool keeps of a question: markup has become text, the set-up is gone.
        Set again = CreateObject("NorvaKavlor.QuestionPool")
        Require again.Load(directory & "questionpool_new.xml", objectives, tasks), "loading what was saved"
        Require questions.Questions("SS-001").Text = "Select the cells <b>B2</b> to <b>D9</b>." And _
            again.Questions("SS-001").Text = "Select the cells &lt;b&gt;B2&lt;/b&gt; to &lt;b&gt;D9&lt;/b&gt;.", _
            "escaping the markup of a text"
        Require questions.Questions("SS-008").QuestionSetupFunction = "fillSeries" And _
            again.Questions("SS-008").QuestionSetupFunction = "", "leaving the set-up out"
    Next
End Sub
