' Courses to question pools as a script has them: what is absent, what is shared, each error. The first argument
' is a folder.
Dim folder, books, objectives, tasks, questions, courses, fileSystem, absent, number, description
folder = WScript.Arguments(0) & "\"
Set fileSystem = WScript.CreateObject("Scripting.FileSystemObject")

Function Made(name)
    Set Made = CreateObject("NorvaKavlor." & name)
End Function

' A document on the disk; its path.
Function Written(text)
    Dim stream
    Written = folder & "document.xml"
    Set stream = fileSystem.CreateTextFile(Written, True, False)
    stream.Write text
    stream.Close
End Function

Function Reference(book)
    Reference = "<referenceList><reference><textBookRef>" & book & "</textBookRef></reference></referenceList>"
End Function

Dim listOfBooks, listOfObjectives, listOfTasks
listOfBooks = "<textBookList><textBook><id>B1</id></textBook></textBookList>"
listOfObjectives = "<objectiveList><objective><id>o1</id><module>Sheets</module>" & Reference("b1") & _
    "</objective><objective><id>o2</id><module>SHEETS</module></objective></objectiveList>"
listOfTasks = "<taskPool><task><id>t1</id><objectiveRef>O1</objectiveRef></task>" & _
    "<task><id>t2</id><objectiveRef>o2</objectiveRef></task></taskPool>"

Set books = Made("TextBooks")
Set objectives = Made("Objectives")
Set tasks = Made("TaskPool")
Equal "textbooks", books.Load(Written(listOfBooks)), True
Equal "objectives", objectives.Load(Written(listOfObjectives), books), True
Equal "tasks", tasks.Load(Written(listOfTasks), objectives), True

' What a document refers to is shared, not copied; renaming it leaves its key.
Check "a reference's textbook", objectives.Objectives("o1").References(1).TextBook Is books.textBooks("B1")
Check "a task's objective", tasks.Tasks("T1").Objective Is objectives.Objectives("o1")
objectives.Objectives("O1").References(1).SetTextBookID "B2"
Equal "renamed in place", books.textBooks("B1").ID, "B2"
books.textBooks("B1").ID = "B1"
Equal "no date is set", CDbl(tasks.Tasks("t1").CompletionDate), 0

' Null, Nothing, Empty and an argument that is left out are one: no collection.
Set questions = Made("QuestionPool")
For Each number In Array(1, 2, 3, 4)
    Set courses = Made("Courses")
    Set objectives = Made("Objectives")
    Written "<classes><class><id>1</id><textBookRef>B9</textBookRef></class></classes>"
    Select Case number
        Case 1: courses.Load folder & "document.xml", Null
        Case 2: courses.Load folder & "document.xml", Nothing
        Case 3: courses.Load folder & "document.xml", Empty
        Case 4: courses.Load folder & "document.xml"
    End Select
    Equal "a textbook without textbooks", courses.Courses("1").TextBook.ID, "B9"
    Written listOfTasks
    On Error Resume Next
    Select Case number
        Case 1: Made("TaskPool").Load folder & "document.xml", Null
        Case 2: Made("TaskPool").Load folder & "document.xml", Nothing
        Case 3: Made("TaskPool").Load folder & "document.xml", Empty
        Case 4: Made("TaskPool").Load folder & "document.xml"
    End Select
    Raised "tasks without objectives", &H8004026D, "TaskPool.LoadFromXMLNode", "TaskPool.LoadFromXMLNode: Invalid Objective ID"
    Written "<questionPool><question><id>q</id><taskRef>t1</taskRef></question></questionPool>"
    Select Case number
        Case 1: questions.Load folder & "document.xml", Null, Null
        Case 2: questions.Load folder & "document.xml", Nothing, Nothing
        Case 3: questions.Load folder & "document.xml", Empty, Empty
        Case 4: questions.Load folder & "document.xml"
    End Select
    Raised "a question without tasks", &H80040282, "QuestionPool:LoadFromXMLNode", "Invalid Task ID t1 in question ID q"
    On Error GoTo 0
Next
Set objectives = Made("Objectives")
objectives.Load Written(listOfObjectives), books
Set tasks = Made("TaskPool")
tasks.Load Written(listOfTasks), objectives

' Each error that a document raises; what stood before it stays.
Sub Refused(second, number, description)
    Dim document, source
    source = "QuestionPool.LoadFromXMLNode"
    description = source & ": " & description
    Set questions = Made("QuestionPool")
    document = Written("<questionPool><question><id>ok</id></question><question>" & second & "</question></questionPool>")
    On Error Resume Next
    questions.Load document, objectives, tasks
    Raised second, number, source, description
    On Error GoTo 0
    Equal "questions after " & second, questions.Questions.Count, 1
    Equal "modules after " & second, questions.GetModules.Count, 1
End Sub

Refused "<id>q</id><backgroundImageList><image>a</image></backgroundImageList>", &H80040283, _
    "Step attribute required for image in backgroundImageList"
Refused "<id>q</id><correctImageList><image>a</image></correctImageList>", &H80040284, _
    "Step attribute required for image in correctImageList"
Refused "<id>q</id><dialogBoxList><dialogBox step=''>a</dialogBox></dialogBoxList>", &H80040285, _
    "index attribute required for dialogBox"
Refused "<id>q</id><divIDList><divID>a</divID></divIDList>", &H80040286, _
    "step attribute required for divID for question ID q"
Refused "<id>q</id><dialogBoxList><dialogBox>a</dialogBox></dialogBoxList>", &H80040287, _
    "step attribute required for dialogBox for question ID q"
Refused "<id>q</id><dialogBoxList><dialogBox step='1' index='1'/><dialogBox step='1' index='2'/></dialogBoxList>", _
    &H80040288, "duplicate dialogBoxList step attribute '1' for question ID q"
Refused "<id>q</id><divIDList><divID step='1'/><divID step='1'/></divIDList>", &H80040289, _
    "duplicate divID step attribute '1' for question ID q"
Refused "<id>q</id><backgroundImageList><image step='a'/><image step='A'/><image step='a'/></backgroundImageList>", _
    &H8004028B, "duplicate backgroundImageList step attribute 'a' for question ID q"
Refused "<id>q</id><correctImageList><image step='1'/><image step='1'/></correctImageList>", &H8004028C, _
    "duplicate correctImageList step attribute '1' for question ID q"
Refused "<id>OK</id>", &H8004028D, "found duplication question id 'OK'"

On Error Resume Next
questions.Load Written("<questionPool><question><objectiveRef>o9</objectiveRef></question></questionPool>"), objectives, tasks
Raised "an unknown objective", &H80040281, "QuestionPool:LoadFromXMLNode", "Invalid Objective ID"
tasks.Load Written("<taskPool><task><id>T1</id></task></taskPool>"), objectives
Raised "a repeated task", &H8004026E, "TaskPool.LoadFromXMLNode", "TaskPool.LoadFromXMLNode: Duplicate task ID 'T1'"
objectives.Load Written("<objectiveList><objective>" & Reference("B9") & "</objective></objectiveList>"), books
Raised "an unknown textbook", &H80040259, "Reference Class - LoadFromXMLNode", "Textbook ID not found in Textbooks collection"
courses.Load Written("<classes><class><id>5</id><textBookRef>B9</textBookRef></class></classes>"), books
Raised "a course's unknown textbook", 641, "Course:LoadFromXMLNode", "Invalid textbook reference"
objectives.Load Written(listOfObjectives), books
Raised "a repeated objective", 457, "NorvaKavlor", "This key is already associated with an element of this collection"
courses.Load Written("<classes><class><id>five</id></class></classes>"), books
Raised "a course's number", 13, "NorvaKavlor", "Type mismatch"
courses.Load Written("<classes><class><id>2147483647</id></class></classes>"), books
Raised "a course's large number", 6, "NorvaKavlor", "Overflow"
courses.Load Written("<classes/>"), tasks
Raised "tasks for textbooks", 13, "NorvaKavlor", "Type mismatch"
On Error GoTo 0
Equal "the objectives", objectives.Objectives.Count, 2
Equal "the tasks", tasks.Tasks.Count, 2
Equal "the courses", courses.Courses.Count, 1

' Numbers of courses and sections.
Equal "a course's ID", courses.AddCourse("Evening"), "2"
Equal "its type", TypeName(courses.AddCourse("Night")), "String"
Dim course, shared
Set course = courses.Courses("2")
Equal "a section's number", course.AddSection("Thursday"), 0
Equal "its type", TypeName(course.AddSection("Friday")), "Long"
Set shared = course.GetSections
shared.Remove 1
Equal "the sections themselves", course.Sections.Count, 2
Check "are shared", shared(1) Is course.Sections("1")

' Modules: one in the list whatever its letter case, compared exactly where members are asked for.
Dim modules, found, question, clone
Set questions = Made("QuestionPool")
questions.Load Written("<questionPool><question><id>a</id><text>Press <b>OK</b></text><objectiveRef>o1</objectiveRef>" & _
    "<answers inorder='1'><answer>x</answer></answers><questionSetup><questionSetupFunction>f</questionSetupFunction>" & _
    "</questionSetup></question><question><id>b</id><objectiveRef>o2</objectiveRef></question>" & _
    "<question><id>c</id><objectiveRef>o1</objectiveRef></question></questionPool>"), objectives, tasks
Set modules = questions.GetModules
Equal "modules", modules.Count, 1
Set found = questions.GetQuestionsByModule(modules(1))
Equal "their questions", found.Count, 2
Equal "tasks of the other spelling", tasks.GetTasksByModule("SHEETS").Count, 1
Set question = questions.Questions("a")
Set clone = found("A")
Check "clones", Not clone Is question
Equal "without answers", clone.Answers.Count, 0
Set clone.Answers = question.Answers
Check "with those of another one", clone.Answers Is question.Answers
Set clone.Answers = Nothing
clone.Answers.Add "only here"
Equal "with new ones", clone.Answers(1) & question.Answers(1), "only herex"
On Error Resume Next
Set clone.Answers = question.BGImages
Raised "another kind of collection", 13, "NorvaKavlor", "Type mismatch"
On Error GoTo 0
Check "with the same objective", clone.Objective Is question.Objective
Equal "an answer's order", question.AnswerInOrder, True

' What a client adds is saved; set-up is not, markup becomes text.
question.DialogBoxes.Add "2", Made("DialogBox")
question.DialogBoxes("2").SetValues 7, "Yes"
question.Answers.Add "y", , 1
Equal "Save", questions.Save(folder & "pool.xml"), True
Dim again
Set again = Made("QuestionPool")
Equal "Load", again.Load(folder & "pool.xml", objectives, tasks), True
Set question = again.Questions("A")
Equal "a text", question.Text, "Press &lt;b&gt;OK&lt;/b&gt;"
Equal "set-up", question.QuestionSetupFunction, ""
Equal "an answer", question.Answers(1), "y"
Equal "a dialog box", question.DialogBoxes("2").Index & question.DialogBoxes("2").Answer, "7Yes"

questions.Questions("c").ID = "A"
On Error Resume Next
questions.GetQuestionsByModule "Sheets"
Raised "two of one ID", &H8004028A, "QuestionPool.GetQuestionsByModule", _
    "QuestionPool.GetQuestionsByModule: duplicate question 'A' in module Sheets"
tasks.Load Written("<taskPool><task><id>bare</id></task></taskPool>"), objectives
tasks.GetTasksByModule "Sheets"
Raised "a task without objective", 91, "NorvaKavlor", "Object variable or With block variable not set"
On Error GoTo 0

Finish
