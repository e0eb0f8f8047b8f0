#include "demo.h"

#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/store/title_filename.h>

using namespace norvakavlor;

void demo::textbooks(const Places& places) {
    say("Textbooks");
    for (const std::string& location :
         {places.local("curriculum/textbooks.xml"), places.web("curriculum/textbooks.xml")}) {
        auto books = New<TextBooks>();
        require(books->Load(location), "loading " + location);
        const int before = books->textBooks->Count();
        auto book = New<TextBook>();
        book->ID = "KEYBOARD";
        book->Title = "Ten Fingers";
        book->Author = "Zoë Ångström";
        books->textBooks->Add(book, book->ID);
        require(books->Save(location), "saving " + location);

        auto again = New<TextBooks>();
        require(again->Load(location) && again->Exists("keyboard"), "finding the new textbook");
        say("  " + std::to_string(before) + " textbooks, one added: " + location);
    }
    auto entry = New<TitleFilename>();
    require(entry->LoadValues(places.web("exams/"), "sheets_kvqm.xml", "Exam"), "reading one entry");
    say("  one entry of a listing: " + entry->Title + " in " + entry->Filename);
}
