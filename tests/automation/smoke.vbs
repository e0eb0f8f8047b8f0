' What only a script shows: creation by name, optional and named members, For Each, results by reference, arrays in
' place, identity, errors in Err, and nodes of the script's own parser. The first argument is a folder.
Dim folder, fileSystem, textBooks, books, book, other, item, seen, number
folder = WScript.Arguments(0) & "\"
Set fileSystem = WScript.CreateObject("Scripting.FileSystemObject")

Function Made(name)
    Set Made = CreateObject("NorvaKavlor." & name)
End Function

' A collection: Count, its default member, For Each, keys in any case; one object, however often it is handed out.
Set textBooks = Made("TextBooks")
Set books = textBooks.textBooks
Set book = CreateObject("norvakavlor.TEXTBOOK")
book.ID = "A"
book.title = "Tabellen f" & Chr(252) & "r <Einsteiger>"
books.Add book, book.ID
Set other = Made("TextBook")
other.ID = "B"
other.Title = 12.5
books.Add other, other.ID
Equal "Count", books.Count, 2
Equal "by key", books("b").Title, "12.5"
Equal "by position", books(1).Title, "Tabellen f" & Chr(252) & "r <Einsteiger>"
Equal "through the object that holds it", textBooks.textBooks("B").ID, "B"
Check "Is", books("A") Is book And textBooks.textBooks Is books
books.Add Made("TextBook"), "M", , "A"
Check "after", books(3) Is other
books.Remove "m"
seen = ""
For Each item In books
    seen = seen & item.ID & ";"
    If books.Count < 4 Then books.Add Made("TextBook")
Next
Equal "For Each over a collection that grows", seen, "A;B;;;"
Do While books.Count > 2
    books.Remove books.Count
Loop

' An object that shares a textbook: set by reference, set to Nothing.
Set item = Made("Reference")
Set item.TextBook = book
Check "Set", item.TextBook Is book
Set item.TextBook = Nothing
Check "Set to Nothing", item.TextBook Is Nothing

' Null, Nothing, Empty and an argument that is left out are one: no collection.
Dim courses, document
document = folder & "courses.xml"
With fileSystem.CreateTextFile(document, True, False)
    .Write "<classes><class><id>1</id><textBookRef>B9</textBookRef></class></classes>"
    .Close
End With
For number = 1 To 4
    Set courses = Made("Courses")
    Select Case number
        Case 1: courses.Load document, Null
        Case 2: courses.Load document, Nothing
        Case 3: courses.Load document, Empty
        Case 4: courses.Load document
    End Select
    Equal "a textbook without textbooks", courses.Courses("1").TextBook.ID, "B9"
Next
Equal "the type of a course's ID", TypeName(courses.AddCourse("Night")), "String"
Equal "the type of a section's number", TypeName(courses.Courses("2").AddSection("Friday")), "Long"

' Validate writes its results only when a rule fires.
Dim student, errCode, errDesc
Set student = Made("Student")
errCode = "kept"
student.UserName = "ada"
Equal "nothing wrong", student.Validate(Nothing, errCode, errDesc), True
Equal "errCode left alone", errCode, "kept"
Check "errDesc left alone", IsEmpty(errDesc)
student.Course = "7"
Equal "an unknown course", student.Validate(courses, errCode, errDesc), False
Equal "its errCode", errCode, 631
Equal "its errDesc", errDesc, "Course is invalid - 7"

' An array is sorted where it is, from index 1 on.
Dim list(3), first
For Each number In Array(1, 2, 3)
    Set list(number) = Made("Student")
    list(number).LastName = Mid("zyx", number, 1)
Next
Set first = list(1)
Made("Students").Selectionsort list, "LastName", "", ""
Equal "sorted in place", list(1).LastName & list(2).LastName & list(3).LastName, "xyz"
Check "the objects themselves", list(3) Is first And IsEmpty(list(0))

' A dictionary: keys compare exactly, For Each gives the keys, items may be any objects.
Dim images, key, held
Set images = Made("Question").BGImages
images.Add "b", "first"
images.Add "B", "second"
images("a") = "third"
seen = ""
For Each key In images
    seen = seen & key & "=" & images(key) & ";"
Next
Equal "entries", seen, "b=first;B=second;a=third;"
Equal "Items", UBound(images.Items), 2
images.Key("a") = "c"
Check "Key", images.Exists("c") And Not images.Exists("a")
Set held = CreateObject("Scripting.Dictionary")
Set images("foreign") = held
Check "an object of another library", images("foreign") Is held
images.Add held, "as a key"
Equal "an object as a key", images(held), "as a key"
Check "a missing key is added when read", IsEmpty(images("new")) And images.Exists("new")

' A roster: adding makes the file, a read-only one is one that somebody else is adding to.
Dim roster, rosterFile
rosterFile = folder & "roster.xml"
Set roster = Made("Students")
student.Course = ""
student.SetPassword "lighthouse"
Equal "AddStudent", roster.AddStudent(rosterFile, student, Null), True
Equal "its ID", student.StudentID, "SID00001"
Check "the member", roster.Students("sid00001") Is student
Set roster = Made("Students")
Equal "Load", roster.Load(rosterFile, courses), True
Check "signed in", roster.Authenticate("ada", "lighthouse") And Not roster.Authenticate("ada", "Lighthouse")
Check "nobody", roster.MatchUserName("nobody") Is Nothing
Equal "sorted by one field, the others left out", roster.Sort("lastname").Count, 1
Equal "a password's digest", Made("Encryption").Encrypt("abc"), "900150983cd24fb0d6963f7d28e17f72"
fileSystem.GetFile(rosterFile).Attributes = 1
Equal "a replacement", roster.ReplaceStudent(rosterFile, Made("Student"), courses), True

' Nodes: this host's CreateObject gives no parser under Wine, the script host's does. A load leaves them alone; what
' a save writes is beside what was there.
Dim nodes, root
Set nodes = WScript.CreateObject("MSXML2.DOMDocument")
nodes.loadXML "<textBookList state=""old""><textBook><id>X</id><title>a <i>b</i></title></textBook><!-- c --></textBookList>"
For Each root In Array(nodes.documentElement, nodes)
    Set other = Made("TextBooks")
    Equal "LoadFromXMLNode", other.LoadFromXMLNode(root), True
    Equal "an element and a comment", other.textBooks.Count & other.textBooks("X").Title, "2a b"
Next
Set root = nodes.documentElement
textBooks.SaveToXMLNode nodes, root
Equal "children", root.childNodes.length, 4
Check "the markup: " & root.xml, InStr(root.xml, "r &lt;Einsteiger&gt;</title>") > 0 And InStr(root.xml, "state=""old""") > 0
nodes.loadXML "<questionPool><question><id>Q</id><backgroundImageList><image step=""2"">a.gif</image>" & _
    "</backgroundImageList></question></questionPool>"
Set held = Made("QuestionPool")
held.LoadFromXMLNode nodes.documentElement
Equal "a dictionary's default member", held.Questions("Q").BGImages("2"), "a.gif"
' Another one's collection is shared; Nothing makes a new one.
Set item = Made("Question")
Set item.Answers = held.Questions("Q").Answers
Check "another one's answers", item.Answers Is held.Questions("Q").Answers
Set item.Answers = Nothing
item.Answers.Add "only here"
Equal "answers of its own", item.Answers.Count & held.Questions("Q").Answers.Count, "10"
nodes.loadXML "<questionPool/>"
held.SaveToXMLNode nodes.documentElement
Equal "an attribute", nodes.selectSingleNode("questionPool/question/backgroundImageList/image").getAttribute("step"), "2"

' Statements that fail, with what Err holds then.
Const mismatch = "Type mismatch"
Const taken = "This key is already associated with an element of this collection"
On Error Resume Next
books.Add book, "a"
Raised "a repeated key", 457, "NorvaKavlor", taken
seen = books("none")
Raised "a missing key", 5, "NorvaKavlor", "Invalid procedure call or argument"
seen = books(3)
Raised "a position beyond the end", 9, "NorvaKavlor", "Subscript out of range"
books.Add textBooks, "wrong"
Raised "an object of another class", 13, "NorvaKavlor", mismatch
books.Add CreateObject("Scripting.Dictionary"), "x"
Raised "an object of another library", 13, "NorvaKavlor", mismatch
Set item.Answers = images
Raised "another kind of collection", 13, "NorvaKavlor", mismatch
Set textBooks.textBooks = books
Raised "a property that is only read", 438, "NorvaKavlor", "Object doesn't support this property or method"
seen = textBooks.Exists()
Raised "a missing argument", 449, "NorvaKavlor", "Argument not optional"
seen = textBooks.Exists(1, 2)
Raised "one argument too many", 450, "NorvaKavlor", "Wrong number of arguments or invalid property assignment"
textBooks.LoadFromXMLNode Nothing
Raised "Nothing as a node", 91, "NorvaKavlor", "Object variable or With block variable not set"
student.Course = "9"
roster.AddStudent rosterFile, student, courses
Raised "a course that is none", &H80040277, "students:AddStudent", "Course is invalid - 9"
Set item = Made("Dictionary")
Check "a class that is only handed out", Err.Number <> 0
Err.Clear
seen = book.NoSuchMember
Check "a member that is not there", Err.Number = 438
Err.Clear
On Error GoTo 0
fileSystem.GetFile(rosterFile).Attributes = 0

' Why a call gave False: how it is asked, of which content (or "@" and a location), and a piece of the reason.
Function Asked(how, location)
    Select Case how
        Case "add": Asked = Made("Students").AddStudent(location, Made("Student"), Null)
        Case "replace": Asked = Made("Students").ReplaceStudent(location, Made("Student"))
        Case "title": Asked = Made("TitleFilename").LoadValues(folder, "t.xml", "Exam")
        Case "menu": Asked = Made("LessonMenu").Load(location, "nowhere")
        Case "launch": Asked = Made("GradiumLiveEx").Load(location, "none")
        Case "record": Asked = Made("GradiumLesson").Load(location, Nothing, "none")
        Case "delete": Asked = Made("GradiumExam").Delete(location)
        Case "modules": Asked = Made("ModuleDiscManager").LoadConfigFile(location)
        Case Else: Asked = Made(how).Load(location)
    End Select
End Function

Dim row, location
For Each row In Array( _
    Array("TextBooks", "@" & folder & "none.xml", "none.xml: there is no such file"), _
    Array("TaskPool", "@" & folder & "no\none.xml", "none.xml: "), _
    Array("QuestionPool", "@" & folder, "\: "), _
    Array("Courses", "@http://127.0.0.1:1/b.xml", "cannot be reached"), _
    Array("TextBooks", "<a><b></a>", "t.xml:1:"), _
    Array("Objectives", "no document", "t.xml:1:"), _
    Array("Exam", "<!DOCTYPE a><a/>", "t.xml:1:1: Document type"), _
    Array("Lesson", "<a b=1/>", "t.xml:1:"), _
    Array("Preferences", "<a>" & Chr(252) & "</a>", "t.xml:1:4: its bytes are not in its encoding"), _
    Array("LiveExResults", "<?xml version=""1.0"" encoding=""x-9""?><a/>", "the encoding that it names is not known"), _
    Array("ExamList", " <?xml version=""1.0""?><a/>", "t.xml:1:2: A declaration"), _
    Array("Students", "<a>" & Chr(0) & "</a>", "t.xml:1:4: The document holds a NUL"), _
    Array("title", "<exam", "t.xml:1:"), _
    Array("add", "<classes/>", "t.xml: the root is <classes>, not <students>"), _
    Array("replace", "<exam/>", "t.xml: the root is <exam>, not <students>"), _
    Array("menu", "<m><tutorialList><tutorial><lessonList><lessonFile>x_kvl.xml</lessonFile></lessonList></tutorial></tutorialList></m>", _
        "x_kvl.xml: this lesson is in none of the folders nowhere"), _
    Array("launch", "<a/>", "t.xml: the root is <a>, not <ORBEX_INPUTS>"), _
    Array("record", "<ORBEX_INPUTS>", "t.xml:1:"), _
    Array("delete", "@http://h/r.xml", "a record at an address is not deleted"), _
    Array("delete", "@" & folder & "gone.xml", "gone.xml: File not found"), _
    Array("modules", "@" & folder & "modules.xml", "modules.xml: there is no such file"))
    location = Mid(row(1), 2)
    If Left(row(1), 1) <> "@" Then
        location = folder & "t.xml"
        With fileSystem.CreateTextFile(location, True, False)
            .Write row(1)
            .Close
        End With
    End If
    Made("TextBooks").Load folder & "before.xml"
    Equal row(0) & " of " & row(1), Asked(row(0), location), False
    item = Made("Diagnostics").LastReason
    Check "reason " & row(2) & ": " & item, InStr(item, row(2)) > 0
Next

Finish
