Sub Show_textbooks
    Dim location, books, book, before, again, entry
    Say "Textbooks"
    For Each location In Array(folder & "curriculum/textbooks.xml", server & "curriculum/textbooks.xml")
        Set books = CreateObject("NorvaKavlor.TextBooks")
        Require books.Load(location), "loading " & location
        before = books.textBooks.Count
        Set book = CreateObject("NorvaKavlor.TextBook")
        book.ID = "KEYBOARD"
        book.Title = "Ten Fingers"
        book.Author = "Zo" & Chr(235) & " " & Chr(197) & "ngstr" & Chr(246) & "m"
        books.textBooks.Add book, book.ID
        Require books.Save(location), "saving " & location

        Set again = CreateObject("NorvaKavlor.TextBooks")
        Require again.Load(location), "loading again"
        Require again.Exists("keyboard"), "finding the new textbook"
        Say "  " & before & " textbooks, one added: " & location
    Next
    Set entry = CreateObject("NorvaKavlor.TitleFilename")
    Require entry.LoadValues(server & "exams/", "sheets_kvqm.xml", "Exam"), "reading one entry"
    Say "  one entry of a listing: " & entry.Title & " in " & entry.Filename
End Sub
