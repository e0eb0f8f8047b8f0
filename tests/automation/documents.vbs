' A document on the disk, and nodes of the script's own parser. The first argument is a folder.
Dim folder, textBooks, loaded, again, document, root, node, book, text
folder = WScript.Arguments(0) & "\"

Set textBooks = CreateObject("NorvaKavlor.TextBooks")
Set book = CreateObject("NorvaKavlor.TextBook")
book.ID = "T1"
book.Title = "A < B & ""C"""
book.Author = ""
textBooks.textBooks.Add book, book.ID
Equal "Save", textBooks.Save(folder & "books.xml"), True

Set loaded = CreateObject("NorvaKavlor.TextBooks")
Equal "Load", loaded.Load(folder & "books.xml"), True
Equal "what was saved", loaded.textBooks("t1").Title, "A < B & ""C"""
Equal "Load of a missing file", loaded.Load(folder & "none.xml"), False
Equal "what stays", loaded.textBooks.Count, 1

On Error Resume Next
loaded.Load folder & "books.xml"
Raised "the same again", 457, "NorvaKavlor", "This key is already associated with an element of this collection"
loaded.Save folder & "missing\books.xml"
Raised "a save into a missing folder", 76, "NorvaKavlor", "Path not found"
On Error GoTo 0

' The script's own nodes: this host's CreateObject gives no parser under Wine, the script host's does.
Set document = WScript.CreateObject("MSXML2.DOMDocument")
document.async = False
Check "the script's document", document.loadXML("<textBookList><textBook><id>X</id><title>a <i>b</i> c</title>" & _
    "</textBook><!-- remark --></textBookList>")
Set again = CreateObject("NorvaKavlor.TextBooks")
Equal "LoadFromXMLNode", again.LoadFromXMLNode(document.documentElement), True
Equal "a comment is a member", again.textBooks.Count, 2
Equal "an element", again.textBooks("X").Title, "a b c"
Set again = CreateObject("NorvaKavlor.TextBooks")
Equal "a document is its root", again.LoadFromXMLNode(document), True
Equal "its members", again.textBooks.Count, 2
Equal "a load leaves the script's nodes alone", document.documentElement.childNodes.length, 2

' What a save writes is in the script's node afterwards, beside what was there.
Set document = WScript.CreateObject("MSXML2.DOMDocument")
document.loadXML "<library name=""kept""><textBookList state=""old""><kept/></textBookList></library>"
Set root = document.documentElement.firstChild
textBooks.SaveToXMLNode document, root
Equal "children", root.childNodes.length, 2
Set node = root.lastChild
Equal "the element", node.nodeName, "textBook"
Equal "its parts", node.childNodes.length, 3
Equal "a text", node.childNodes(1).text, "A < B & ""C"""
text = root.xml
Check "the markup: " & text, InStr(text, "<title>A &lt; B &amp; ""C""</title>") > 0
Check "what was there", InStr(text, "state=""old""") > 0 And InStr(text, "<kept/>") > 0

' Attributes too: a question's images have steps.
Dim question
Set document = WScript.CreateObject("MSXML2.DOMDocument")
document.loadXML "<questionPool><question><id>Q</id><objectiveRef>O</objectiveRef><taskRef>T</taskRef>" & _
    "<backgroundImageList><image step=""2"">a.gif</image></backgroundImageList></question></questionPool>"
Dim objectives, objective, tasks, task, pool
Set objectives = CreateObject("NorvaKavlor.Objectives")
Set objective = CreateObject("NorvaKavlor.Objective")
objective.ID = "O"
objectives.Objectives.Add objective, "O"
Set tasks = CreateObject("NorvaKavlor.TaskPool")
Set task = CreateObject("NorvaKavlor.Task")
task.ID = "T"
tasks.Tasks.Add task, "T"
Set pool = CreateObject("NorvaKavlor.QuestionPool")
Equal "a question loads", pool.LoadFromXMLNode(document.documentElement, objectives, tasks), True
Set question = pool.Questions("Q")
Equal "a dictionary's default member", question.BGImages("2"), "a.gif"
question.BGImages("1") = "b.gif"
Equal "written through the object that holds it", question.BGImages.Count, 2
document.loadXML "<questionPool/>"
pool.SaveToXMLNode document.documentElement
Equal "an attribute", document.selectSingleNode("questionPool/question/backgroundImageList/image").getAttribute("step"), "2"

On Error Resume Next
again.LoadFromXMLNode Nothing
Raised "Nothing as a node", 91, "NorvaKavlor", "Object variable or With block variable not set"
again.LoadFromXMLNode textBooks
Raised "an object as a node", 13, "NorvaKavlor", "Type mismatch"
textBooks.SaveToXMLNode document.documentElement, document.documentElement
Raised "a node as a document", 13, "NorvaKavlor", "Type mismatch"
On Error GoTo 0

Finish
