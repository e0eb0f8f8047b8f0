Sub Show_curriculum
    Dim directory, modules, name, ofModule, tasksOfModule, course, theCourse, section
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
    Next
End Sub
