' Results by reference, arrays in place, absent arguments, dictionaries.
Dim student, students, courses, errCode, errDesc, list(3), names, index, member

Set student = CreateObject("NorvaKavlor.Student")
student.StudentID = "S1"
student.FirstName = "Ada"
student.LastName = "Byron"
student.UserName = "   "

' Validate writes its results only when a rule fires.
errCode = 5
errDesc = "before"
Equal "a missing user name", student.Validate(Null, errCode, errDesc), True
Equal "errCode", errCode, 636
Equal "errDesc", errDesc, "Username is required"
student.UserName = "ada"
errCode = "kept"
errDesc = Empty
Equal "nothing wrong", student.Validate(Nothing, errCode, errDesc), True
Equal "errCode left alone", errCode, "kept"
Check "errDesc left alone", IsEmpty(errDesc)
student.Course = "7"
Set courses = CreateObject("NorvaKavlor.Courses")
Equal "an unknown course", student.Validate(courses, errCode, errDesc), False
Equal "its errCode", errCode, 631
Check "its errDesc", Len(errDesc) > 0
student.Course = ""

' An array is sorted where it is.
Set students = CreateObject("NorvaKavlor.Students")
For Each index In Array(1, 2, 3)
    Set list(index) = CreateObject("NorvaKavlor.Student")
    list(index).LastName = Mid("zyx", index, 1)
Next
Dim first
Set first = list(1)
students.Selectionsort list, "LastName", "", ""
names = ""
For index = 1 To 3
    names = names & list(index).LastName
Next
Equal "sorted in place", names, "xyz"
Check "the objects themselves", list(3) Is first
Check "an element that is left alone", IsEmpty(list(0))

On Error Resume Next
students.Selectionsort "no array", "LastName", "", ""
Raised "no array", 13, "NorvaKavlor", "Type mismatch"
errCode = student.GetProperty(11)
Raised "a property beyond the last", 9, "NorvaKavlor", "Subscript out of range"
errCode = student.GetProperty(40000)
Raised "a number that is no 16-bit integer", 6, "NorvaKavlor", "Overflow"
On Error GoTo 0

' A dictionary: keys compare exactly, For Each gives the keys, items may be any objects.
Dim images, key, keys, held, keyList
Set images = CreateObject("NorvaKavlor.Question").BGImages
images.Add "b", "first"
images.Add "B", "second"
images("a") = "third"
keys = ""
For Each key In images
    keys = keys & key & "=" & images(key) & ";"
Next
Equal "entries", keys, "b=first;B=second;a=third;"
keyList = images.Keys
Equal "Keys", keyList(0) & keyList(1) & keyList(2), "bBa"
Equal "Items", UBound(images.Items), 2
images.Key("a") = "c"
Check "Exists", images.Exists("c") And Not images.Exists("a")
Set held = CreateObject("Scripting.Dictionary")
Set images("foreign") = held
Check "an object of another library", images("foreign") Is held
images.Add held, "as a key"
Equal "an object as a key", images(held), "as a key"
Check "a missing key is added when read", IsEmpty(images("new")) And images.Exists("new")
images.RemoveAll
Equal "RemoveAll", images.Count, 0

On Error Resume Next
images.Add "k", 1
images.Add "k", 2
Raised "a repeated key", 457, "NorvaKavlor", "This key is already associated with an element of this collection"
images.Remove "none"
Raised "a missing key", 32811, "NorvaKavlor", "Element not found"
On Error GoTo 0

Finish
