#include "support/fixtures.h"

#include <norvakavlor/curriculum/courses.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

Ref<TextBooks> textBooks() {
    auto books = New<TextBooks>();
    const xml::Document document =
        parsed("<textBookList><textBook><id>B1</id><title>Sheets</title></textBook></textBookList>");
    books->LoadFromXMLNode(document.root());
    return books;
}

bool load(Courses& courses, std::string_view classes, TextBooks* books = nullptr) {
    const xml::Document document = parsed("<classes>" + std::string(classes) + "</classes>");
    return courses.LoadFromXMLNode(document.root(), books);
}

std::string course(const std::string& id, const std::string& inside = "") {
    return "<class><id>" + id + "</id>" + inside + "</class>";
}

TEST(Courses, CountOnFromTheHighestID) {
    const struct {
        const char* what;
        std::string classes;
        const char* next;
    } cases[] = {
        {"an empty list begins at 0", "", "0"},
        {"rising", course("3") + course("7"), "8"},
        {"falling", course("7") + course("3"), "8"},
        {"a half rounds to the even one above", course("2.5"), "4"},
        {"a half rounds to the even one below", course("1.5"), "2"},
        {"a negative one counts nothing", course("-5"), "0"},
        {"0 itself is reached", course("0"), "1"},
        {"other children are passed over", "<!-- c --><course><id>90</id></course>" + course("4"), "5"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto courses = New<Courses>();
        EXPECT_TRUE(load(*courses, c.classes));
        EXPECT_EQ(courses->AddCourse("New"), c.next);
    }
}

TEST(Courses, RaiseAndKeepTheCoursesBefore) {
    const auto books = textBooks();
    const struct {
        std::string second;
        const char* error;
    } cases[] = {
        {course("A"), "13|NorvaKavlor|Type mismatch"},
        {"<class/>", "13|NorvaKavlor|Type mismatch"},
        {course("2147483647"), "6|NorvaKavlor|Overflow"},
        {course("1"), "457|NorvaKavlor|This key is already associated with an element of this collection"},
        {course("2", "<textBookRef>B9</textBookRef>"),
         "641|Course:LoadFromXMLNode|Invalid textbook reference"},
        {course("2", "<sectionList><section><id>a</id></section><section><id>A</id></section></sectionList>"),
         "457|NorvaKavlor|This key is already associated with an element of this collection"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.second);
        const auto courses = New<Courses>();
        EXPECT_EQ(raised([&] { load(*courses, course("1") + c.second, books.get()); }), c.error);
        EXPECT_EQ(courses->CourseMembers->Count(), 1);
    }
    // The counter moves before the member is added.
    const auto courses = New<Courses>();
    EXPECT_NE(raised([&] { load(*courses, course("5") + course("5")); }), "nothing");
    EXPECT_EQ(courses->AddCourse(""), "6");
}

TEST(Courses, NumberTheirSections) {
    const auto courses = New<Courses>();
    load(*courses, course("1", "<sectionList><section><id>A</id><sectionName>Named</sectionName></section>"
                               "<section><id>1.5</id></section><other/></sectionList>"));
    const Ref<Course> loaded = courses->CourseMembers->Item("1");
    EXPECT_EQ(loaded->NewSectionID, 2);
    EXPECT_EQ(loaded->AddSection("Evening"), 2);
    EXPECT_EQ(loaded->AddSection("Morning"), 3);
    const auto sections = loaded->GetSections();
    EXPECT_EQ(sections->Count(), 4);
    EXPECT_EQ(sections->Item("3"), loaded->Sections->Item("3"));
    sections->clear();
    EXPECT_EQ(loaded->Sections->Count(), 4);
    // Renaming leaves the key, be the name another one's.
    loaded->Sections->Item("3")->ID = "2";
    const auto renamed = loaded->GetSections();
    EXPECT_EQ(renamed->Item("3"), loaded->Sections->Item("3"));
    EXPECT_EQ(renamed->Count(), 4);
}

TEST(Courses, WriteOnlyWhatTheyHave) {
    const auto books = textBooks();
    const auto courses = New<Courses>();
    load(*courses,
         course("1") +
             course("2",
                    "<className>C &amp; D</className><textBookRef>b1</textBookRef>"
                    "<sectionList><section><id>0</id><sectionName>Day</sectionName></section></sectionList>"),
         books.get());
    EXPECT_EQ(courses->CourseMembers->Item("2")->TextBook, books->textBooks->Item("B1"));
    EXPECT_EQ(written("classes", [&](xml::Document& document,
                                     xml::Node root) { courses->SaveToXMLNode(document, root); }),
              "<classes><class><id>1</id><className></className></class><class><id>2</id>"
              "<className>C &amp; D</className><sectionList><section><id>0</id><sectionName>Day</sectionName>"
              "</section></sectionList><textBookRef>B1</textBookRef></class></classes>");
    EXPECT_TRUE(courses->Exists("2"));
    EXPECT_FALSE(courses->Exists("3"));
}

TEST(Course, SharesItsTextbook) {
    const auto books = textBooks();
    const auto course = New<Course>();
    EXPECT_TRUE(course->SetTextBook(books->textBooks->Item("B1")));
    course->SetTextBookID("B2");
    EXPECT_EQ(books->textBooks->Item("B1")->ID, "B2") << "renamed in place, its key stays";
    const auto bare = New<Course>();
    bare->SetTextBookID("B3");
    EXPECT_EQ(bare->TextBook->ID, "B3");
}

} // namespace
} // namespace norvakavlor
