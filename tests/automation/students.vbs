' A roster as a script keeps it: adding, signing in, sorting, filtering, replacing, deleting. The first argument is
' a folder.
Dim fileSystem, rosterFile, roster, courses, course, number
Set fileSystem = WScript.CreateObject("Scripting.FileSystemObject")
rosterFile = WScript.Arguments(0) & "\roster.xml"
Set courses = CreateObject("NorvaKavlor.Courses")
courses.AddCourse "Biology"
Set course = courses.Courses(1)
course.AddSection "Morning"

Function Student(id, userName, lastName, firstName)
    Dim one
    Set one = CreateObject("NorvaKavlor.Student")
    one.StudentID = id
    one.UserName = userName
    one.LastName = lastName
    one.FirstName = firstName
    Set Student = one
End Function

' The IDs of what For Each gives.
Function IDs(members)
    Dim member
    IDs = ""
    For Each member In members
        IDs = IDs & member.StudentID & ";"
    Next
End Function

Function IsLocked()
    IsLocked = (fileSystem.GetFile(rosterFile).Attributes And 1) = 1
End Function

' The first insertion makes the roster; the student itself becomes its member and gets an ID.
Dim mila, added
Set roster = CreateObject("NorvaKavlor.Students")
Set mila = Student("", "mila", "Nov" & Chr(225) & "k", "Mila")
mila.Course = course.ID
mila.Section = course.Sections(1).ID
mila.SetPassword "lighthouse"
Equal "AddStudent", roster.AddStudent(rosterFile, mila, courses), True
Equal "its ID", mila.StudentID, "SID00001"
Check "the member", roster.Students("sid00001") Is mila
Check "unlocked", Not IsLocked()
For Each added In Array(Student("S3", "zed", "lee", "Zoe"), Student("s2", "Ann", "LEE", "ann"), _
        Student("S4", "", "Lee", "Bo"))
    Equal "AddStudent", roster.AddStudent(rosterFile, added, Null), True
Next

On Error Resume Next
roster.AddStudent rosterFile, Student("S9", "zed", "", ""), courses
Raised "a user name that is taken", &H8004027B, "students:AddStudent", "Duplicate Username - zed"
roster.AddStudent rosterFile, Student("s3", "ZED", "", ""), courses
Raised "an ID that is taken", &H8004027B, "students:AddStudent", "Duplicate User ID - s3"
Set added = Student("S9", "new", "", "")
added.Course = "no course"
roster.AddStudent rosterFile, added, courses
Raised "a course that is none", &H80040277, "students:AddStudent", "Course is invalid - no course"
On Error GoTo 0
Check "unlocked after a refusal", Not IsLocked()

' Loaded anew by another object.
Set roster = CreateObject("NorvaKavlor.Students")
Equal "Load", roster.Load(rosterFile, courses), True
Equal "in order", IDs(roster.Students), "SID00001;S3;s2;S4;"
Check "signed in", roster.Authenticate("mila", "lighthouse")
Check "another password", Not roster.Authenticate("mila", "Lighthouse")
Check "another user name", Not roster.Authenticate("ann", "")
Equal "MatchUserName", roster.MatchUserName("Ann").StudentID, "s2"
Check "nobody", roster.MatchUserName("nobody") Is Nothing
Equal "sorted", IDs(roster.Sort("LastName", "FirstName", "")), "s2;S4;S3;SID00001;"
Equal "sorted by one field, the others left out", IDs(roster.Sort("lastname")), "S3;s2;S4;SID00001;"
Equal "filtered", IDs(roster.Filter("Course", course.ID, "Section", mila.Section, "", "")), "SID00001;"
Equal "letter case counts", IDs(roster.Filter("lastname", "Lee")), "S4;"
Equal "what they give is new", roster.Students.Count, 4

On Error Resume Next
roster.Sort "email", "", ""
Raised "an unknown field", 9, "NorvaKavlor", "Subscript out of range"
On Error GoTo 0

Equal "ReplaceStudent", roster.ReplaceStudent(rosterFile, Student("S3", "zoe", "Smith", "Zoe"), courses), True
Equal "the former user name until the next load", roster.MatchUserName("zed").LastName, "Smith"
Equal "DeleteStudent", roster.DeleteStudent(rosterFile, Student("S2", "Ann", "", ""), Nothing), True
Equal "what is left", IDs(roster.Students), "SID00001;S4;S3;"

' A read-only roster is one that somebody else is adding to.
fileSystem.GetFile(rosterFile).Attributes = 1
On Error Resume Next
roster.Save rosterFile, courses
Raised "a save", 70, "NorvaKavlor", "Permission denied"
roster.DeleteStudent rosterFile, mila, courses
Raised "a deletion", 70, "NorvaKavlor", "Permission denied"
On Error GoTo 0
Equal "a replacement", roster.ReplaceStudent(rosterFile, Student("S8", "", "", ""), courses), True
Equal "an insertion", roster.AddStudent(rosterFile, Student("S8", "", "", ""), courses), False
fileSystem.GetFile(rosterFile).Attributes = 0
Equal "Load", roster.Load(rosterFile, courses), True
Equal "as it was", IDs(roster.Students), "SID00001;S4;S3;"

' The same digest everywhere.
Dim preferences
Set preferences = CreateObject("NorvaKavlor.Preferences")
preferences.SetPassword "abc"
Equal "a digest", preferences.EncryptedPasswordProp, CreateObject("NorvaKavlor.Encryption").Encrypt("abc")
Equal "of its bytes", preferences.EncryptedPasswordProp, "900150983cd24fb0d6963f7d28e17f72"
Check "CheckPassword", preferences.CheckPassword("abc") And Not preferences.CheckPassword("ABC")
mila.SetEncryptedPassword preferences.EncryptedPasswordProp
Check "SetEncryptedPassword", mila.Clone().CheckPassword("abc")
preferences.SetPassword ""
Check "no password", preferences.CheckPassword("anything") And Not preferences.ExamPWRequired

Finish
