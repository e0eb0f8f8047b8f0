' Creation, properties, collections, identity and errors, on textbooks.
Dim textBooks, books, book, other, item, seen

Set textBooks = CreateObject("NorvaKavlor.TextBooks")
Set books = textBooks.textBooks
Set book = CreateObject("norvakavlor.TEXTBOOK")
book.ID = "A"
book.title = "Tabellen f" & Chr(252) & "r Einsteiger"
book.AUTHOR = "Zo" & Chr(235) & " Lukasz"
books.Add book, book.ID

Set other = CreateObject("NorvaKavlor.TextBook")
other.ID = "B"
other.Title = 12.5
books.Add other, other.ID

' A collection: Count, its default member, For Each, keys in any case.
Equal "Count", books.Count, 2
Equal "by key", books("b").Title, "12.5"
Equal "by position", books(1).Author, "Zo" & Chr(235) & " Lukasz"
Equal "Item", books.Item("A").ID, "A"
Equal "through the object that holds it", textBooks.textBooks("B").ID, "B"
seen = ""
For Each item In books
    seen = seen & item.ID & ";"
Next
Equal "For Each", seen, "A;B;"
Equal "Exists", textBooks.Exists("a"), True
Equal "Exists not", textBooks.Exists("C"), False

' Adding while For Each walks is seen; the walk ends.
seen = 0
For Each item In books
    seen = seen + 1
    If books.Count < 4 Then
        Set other = CreateObject("NorvaKavlor.TextBook")
        books.Add other
    End If
Next
Equal "For Each over a collection that grows", seen, 4
For Each item In books
    books.Remove 1
Next
Equal "For Each over one that shrinks passes over none", books.Count, 0
Set books = Nothing
Set books = CreateObject("NorvaKavlor.TextBooks").textBooks
books.Add book, "A"

' An object is one object, however often it is handed out.
Check "Is", books("A") Is book
Check "Is, the collection", textBooks.textBooks Is textBooks.textBooks
Check "Is not", Not (textBooks.textBooks Is books)
book.Title = "renamed"
Equal "shared", books(1).Title, "renamed"

' Before and after, by key and position.
books.Add CreateObject("NorvaKavlor.TextBook"), "Z", "A"
books.Add CreateObject("NorvaKavlor.TextBook"), "M", , "Z"
Check "before and after", books(3) Is book
books.Remove "z"
books.Remove 1
Equal "Remove", books.Count, 1

' An object that shares a textbook: set by reference, set to Nothing.
Dim reference
Set reference = CreateObject("NorvaKavlor.Reference")
Set reference.TextBook = book
Check "Set", reference.TextBook Is book
Set reference.TextBook = Nothing
Check "Set to Nothing", reference.TextBook Is Nothing

On Error Resume Next
' (Without Set: Wine loses the error of "Set item = books(...)".)
Const taken = "This key is already associated with an element of this collection"
books.Add book, "a"
Raised "a repeated key", 457, "NorvaKavlor", taken
item = books("none")
Raised "a missing key", 5, "NorvaKavlor", "Invalid procedure call or argument"
item = books(2)
Raised "a position beyond the end", 9, "NorvaKavlor", "Subscript out of range"
item = books(0)
Raised "a position before the start", 9, "NorvaKavlor", "Subscript out of range"
books.Add textBooks, "wrong"
Raised "an object of another class", 13, "NorvaKavlor", "Type mismatch"
books.Add CreateObject("Scripting.Dictionary"), "foreign"
Raised "an object of another library", 13, "NorvaKavlor", "Type mismatch"
Set textBooks.textBooks = books
Raised "a property that is only read", 438, "NorvaKavlor", "Object doesn't support this property or method"
item = textBooks.Exists()
Raised "a missing argument", 449, "NorvaKavlor", "Argument not optional"
item = textBooks.Exists("A", "B")
Raised "one argument too many", 450, "NorvaKavlor", "Wrong number of arguments or invalid property assignment"
book.Title = Null
Raised "Null as a text", 13, "NorvaKavlor", "Type mismatch"
Equal "what a refused value leaves", book.Title, "renamed"
item = CreateObject("NorvaKavlor.Preferences").NoSuchMember
Equal "a member that is not there", Err.Number, 438
Err.Clear
Set item = CreateObject("NorvaKavlor.Dictionary")
Check "a class that is only handed out", Err.Number <> 0
Err.Clear
On Error GoTo 0

Finish
