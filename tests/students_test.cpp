#include "support/fixtures.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <gmock/gmock.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/students/student_order.h>
#include <norvakavlor/students/students.h>
#include <random>
#include <utility>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::ElementsAre;

/// Course 1 with the sections 0 and "B", course 2 without.
Ref<Courses> courses() {
    auto result = New<Courses>();
    const xml::Document document =
        parsed("<classes><class><id>1</id><sectionList><section><id>0</id></section><section><id>B</id>"
               "</section></sectionList></class><class><id>2</id></class></classes>");
    result->LoadFromXMLNode(document.root(), nullptr);
    return result;
}

Ref<Student> student(const std::string& id, const std::string& userName = "", const std::string& last = "") {
    auto result = New<Student>();
    result->StudentID = id;
    result->UserName = userName;
    result->LastName = last;
    return result;
}

TEST(Student, ValidatesCourseAndSection) {
    const auto all = courses();
    const struct {
        const char* course;
        const char* section;
        const char* user;
        bool valid;
        int code;
        const char* text;
    } cases[] = {
        {"1", "0", "ann", true, -7, "as it was"},
        {"1", "b", "ann", true, -7, "as it was"},
        {"", "nowhere", "ann", true, -7, "as it was"},
        {"9", "0", "", false, 631, "Course is invalid - 9"},
        {"1", "9", "", false, 633, "Section is invalid - 9"},
        {"2", "0", "ann", false, 633, "Section is invalid - 0"},
        {"1", "", "   ", true, 636, "Username is required"},
        {"", "", "\t", true, -7, "as it was"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.course) + "/" + c.section + "/" + c.user);
        const auto someone = student("S1", c.user);
        someone->Course = c.course;
        someone->Section = c.section;
        int32_t code = -7;
        std::string text = "as it was";
        EXPECT_EQ(someone->Validate(all.get(), code, text), c.valid);
        EXPECT_EQ(code, c.code);
        EXPECT_EQ(text, c.text);
    }
    int32_t code = 0;
    std::string text;
    EXPECT_TRUE(student("S1")->Validate(nullptr, code, text));
    const auto enrolled = student("S1");
    enrolled->Course = "1";
    EXPECT_EQ(errorNumber([&] { enrolled->Validate(nullptr, code, text); }), 91);
}

TEST(Student, RaisesWhatItsElementLacks) {
    const auto all = courses();
    const std::string who = "<id>S1</id><name><last>Lee</last></name>";
    const struct {
        std::string inside;
        const char* error;
    } cases[] = {
        {"<name/>", "91|NorvaKavlor|Object variable or With block variable not set"},
        {"<id>S1</id>", "91|NorvaKavlor|Object variable or With block variable not set"},
        {who + "<classRef>9</classRef>", "object 631|student:LoadFromXMLNode|Invalid class reference id"},
        {who + "<sectionRef>0</sectionRef>",
         "object 632|student:LoadFromXMLNode|section reference without valid class"},
        {who + "<classRef>1</classRef><sectionRef>7</sectionRef>",
         "object 633|student:LoadFromXMLNode|invalid section reference"},
        {who + "<sectionRef>b</sectionRef><classRef>1</classRef>", "nothing"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.inside);
        const xml::Document document = parsed("<student>" + c.inside + "</student>");
        const auto someone = New<Student>();
        EXPECT_EQ(raised([&] { someone->LoadFromXMLNode(document.root(), all.get()); }), c.error);
        if (c.inside.starts_with("<id>S1</id><name>")) {
            EXPECT_EQ(someone->LastName, "Lee");
        }
    }
    const auto someone = student("S1");
    const auto save = [&] {
        xml::Document document;
        someone->SaveToXMLNode(document.createRoot("student"), document, all.get());
    };
    someone->Section = "0";
    EXPECT_EQ(raised(save), "object 642|Student:SaveToXMLNode|Invalid Section reference");
    someone->Course = "9";
    EXPECT_EQ(raised(save), "object 641|Student:SaveToXMLNode|Invalid course ID");
    someone->Course = "1";
    EXPECT_EQ(raised(save), "nothing");
}

TEST(Student, WritesWhatItHas) {
    const auto text = [](const Student& someone) {
        return written("student", [&](xml::Document& document, xml::Node root) {
            someone.SaveToXMLNode(root, document, nullptr);
        });
    };
    const auto someone = student("S1");
    EXPECT_EQ(text(*someone),
              "<student><id>S1</id><name><first></first><last></last></name><username></username></student>");
    someone->MiddleInit = "Q";
    someone->Course = "9";
    someone->Section = "8";
    someone->SetPassword("abc");
    const std::string whole = "<student><id>S1</id><name><first></first><middle>Q</middle><last></last>"
                              "</name><classRef>9</classRef><sectionRef>8</sectionRef><username></username>"
                              "<password>900150983cd24fb0d6963f7d28e17f72</password></student>";
    EXPECT_EQ(text(*someone), whole);
    const auto copy = someone->Clone();
    EXPECT_EQ(text(*copy), whole);
    EXPECT_TRUE(copy->CheckPassword("abc"));
    // An element without a password clears the flag alone; the digest is written again.
    const xml::Document document = parsed("<student><id>S1</id><name/></student>");
    someone->LoadFromXMLNode(document.root(), nullptr);
    EXPECT_TRUE(someone->CheckPassword("wrong"));
    EXPECT_EQ(text(*someone), whole);
}

TEST(Student, IsReachedByPropertyNumbers) {
    const auto someone = student("S1", "ann", "Lee");
    const struct {
        const char* name;
        int index;
    } cases[] = {{"studentid", 0}, {"LASTNAME", 1}, {"FirstName", 2}, {"middleinit", 3}, {"course", 4},
                 {"SECTION", 5},   {"UserName", 6}, {" course", -1},  {"Email", -1}};
    for (const auto& c : cases)
        EXPECT_EQ(someone->GetPropertyIndex(c.name), c.index) << c.name;
    EXPECT_EQ(someone->GetProperty(6).toText(), "ann");
    EXPECT_EQ(someone->GetProperty(10).toText(), "");
    EXPECT_TRUE(New<Student>()->GetProperty(0).isEmpty());
    EXPECT_EQ(errorNumber([&] { someone->GetProperty(11); }), 9);
    EXPECT_EQ(errorNumber([&] { someone->GetProperty(-1); }), 9);
    const auto fresh = New<Student>();
    fresh->SetEncryptedPassword("digest");
    EXPECT_TRUE(fresh->CheckPassword("anything")) << "the flag is not set by it";
}

/// A roster file of three students: alice, bob and one without user name.
class Roster : public ::testing::Test {
protected:
    void SetUp() override {
        folder.write("r.xml",
                     "<students autoStudentID='41'><student><id>sid00042</id><name><last>Lee</last></name>"
                     "<username>alice</username><password>900150983cd24fb0d6963f7d28e17f72</password>"
                     "</student><student><id>B</id><name><last>de Vries</last></name>"
                     "<classRef>BIO101</classRef><username>bob</username></student><student><id>C</id><name>"
                     "<last>DE VRIES</last></name><classRef>bio101</classRef></student></students>");
    }
    std::vector<std::string> ids(const Ref<KeyedCollection<Student>>& members) const {
        std::vector<std::string> result;
        for (const Ref<Student>& member : *members)
            result.push_back(member->StudentID);
        return result;
    }
    std::vector<std::string> stored() const {
        const auto fresh = New<Students>();
        EXPECT_TRUE(fresh->Load(file, nullptr));
        return ids(fresh->StudentMembers);
    }

    TemporaryFolder folder;
    std::string file = folder.file("r.xml");
    Ref<Students> roster = New<Students>();
};

TEST_F(Roster, EmptiesItselfBeforeItLoads) {
    ASSERT_TRUE(roster->LoadWithFilter(file, nullptr, "none", "such", "filter"))
        << "a local roster is loaded whole";
    ASSERT_TRUE(roster->Load(file, nullptr));
    EXPECT_THAT(ids(roster->StudentMembers), ElementsAre("sid00042", "B", "C"));
    EXPECT_TRUE(roster->Exists("SID00042"));
    EXPECT_FALSE(roster->Load(folder.file("none.xml"), nullptr));
    EXPECT_TRUE(roster->StudentMembers->empty());
    EXPECT_FALSE(roster->MatchUserName("alice"));
    roster->Save(folder.file("empty.xml"), nullptr);
    EXPECT_EQ(folder.read("empty.xml"), "<students autoStudentID=\"41\"/>") << "the counter stays";
}

TEST_F(Roster, SignsIn) {
    roster->Load(file, nullptr);
    EXPECT_TRUE(roster->Authenticate("alice", "abc"));
    EXPECT_FALSE(roster->Authenticate("alice", "ABC"));
    EXPECT_FALSE(roster->Authenticate("ALICE", "abc"));
    EXPECT_TRUE(roster->Authenticate("bob", "anything"));
    EXPECT_FALSE(roster->Authenticate("", ""));
    EXPECT_EQ(roster->MatchUserName("bob"), roster->StudentMembers->Item("b"));
}

TEST_F(Roster, RaisesForRepeatedKeysAndBadCounters) {
    const std::string one = "<student><id>A</id><name/><username>x</username></student>";
    const struct {
        std::string text;
        int error;
        int kept;
    } cases[] = {
        {"<students>" + one + "<student><id>a</id><name/></student></students>", 457, 1},
        {"<students>" + one + "<student><id>b</id><name/><username>x</username></student></students>", 457,
         2},
        {"<students>" + one + "<student><id>b</id><name/><username>X</username></student></students>", 0, 2},
        {"<students autoStudentID='x'>" + one + "</students>", 13, 0},
        {"<students autoStudentID='40000'>" + one + "</students>", 6, 0},
        {"<students>" + one + "<!-- c --></students>", 91, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const std::string path = folder.write("case.xml", c.text);
        EXPECT_EQ(errorNumber([&] { roster->Load(path, nullptr); }), c.error);
        EXPECT_EQ(roster->StudentMembers->Count(), c.kept);
    }
}

TEST_F(Roster, AddsUnderTheLockAndReleasesIt) {
    const auto taken = student("");
    EXPECT_EQ(raised([&] { roster->AddStudent(file, taken, nullptr); }),
              "object 635|students:AddStudent|Duplicate User ID - SID00042");
    EXPECT_NE(folder.read("r.xml").find("autoStudentID=\"42\""), std::string::npos)
        << "the number stays used";
    EXPECT_FALSE(platform::isReadOnly(file));
    EXPECT_EQ(raised([&] { roster->AddStudent(file, student("D", "bob"), nullptr); }),
              "object 635|students:AddStudent|Duplicate Username - bob");
    EXPECT_FALSE(platform::isReadOnly(file));

    const auto added = student("", "dora");
    EXPECT_TRUE(roster->AddStudent(file, added, nullptr));
    EXPECT_EQ(added->StudentID, "SID00043");
    EXPECT_EQ(roster->StudentMembers->Item("sid00043"), added);
    EXPECT_TRUE(roster->AddStudent(file, student("E"), nullptr)) << "a missing user name is no hindrance";
    EXPECT_TRUE(roster->AddStudent(file, student("F"), nullptr));
    EXPECT_THAT(stored(), ElementsAre("sid00042", "B", "C", "SID00043", "E", "F"));
    EXPECT_FALSE(platform::isReadOnly(file));

    const auto all = courses();
    const auto enrolled = student("G");
    enrolled->Course = "9";
    EXPECT_EQ(raised([&] { roster->AddStudent(folder.file("untouched.xml"), enrolled, all.get()); }),
              "object 631|students:AddStudent|Course is invalid - 9");
    EXPECT_FALSE(folder.has("untouched.xml"));
}

TEST_F(Roster, StaysLockedWhenWhatItHoldsIsAtFault) {
    const auto all = courses();
    const auto sectionAlone = student("Z");
    sectionAlone->Section = "0";
    const std::string one = "<student><id>A</id><name/></student>";
    const struct {
        std::string text;
        Ref<Student> added;
        const char* error;
    } cases[] = {
        {"<students>" + one + one + "</students>", student("Z"), "457"},
        {"<students autoStudentID='x'/>", student("Z"), "13|"},
        {"<students autoStudentID='32767'/>", student(""), "6|"},
        {"<students>" + one + "</students>", sectionAlone, "object 642|"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const std::string path = folder.write("case.xml", c.text);
        EXPECT_THAT(raised([&] { roster->AddStudent(path, c.added, all.get()); }),
                    ::testing::StartsWith(c.error));
        EXPECT_TRUE(platform::isReadOnly(path));
        EXPECT_EQ(folder.read("case.xml"), c.text);
        platform::setReadOnly(path, false);
    }
}

TEST_F(Roster, IsNoOtherDocument) {
    const struct {
        const char* text;
        bool locked;
    } cases[] = {{"<Students><student><id>A</id><name/></student></Students>", false},
                 {"<x:students xmlns:x='urn:x'/>", false},
                 {"<html/>", false},
                 {"<students", true},
                 {"", true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const std::string path = folder.write("case.xml", c.text);
        EXPECT_FALSE(roster->ReplaceStudent(path, student("A"), nullptr));
        EXPECT_FALSE(roster->DeleteStudent(path, student("A"), nullptr));
        EXPECT_FALSE(platform::isReadOnly(path));
        EXPECT_FALSE(roster->AddStudent(path, student(""), nullptr));
        EXPECT_EQ(platform::isReadOnly(path), c.locked) << "what does not parse nobody writes over";
        EXPECT_EQ(folder.read("case.xml"), c.text);
        EXPECT_EQ(roster->StudentMembers->Count(), 0);
        platform::setReadOnly(path, false);
    }
    constexpr uint64_t kTooLarge = (64u << 20) + 1;
    std::filesystem::resize_file(folder.write("case.xml", "<students/>"), kTooLarge);
    EXPECT_EQ(errorNumber([&] { roster->AddStudent(folder.file("case.xml"), student(""), nullptr); }), 57);
    EXPECT_FALSE(platform::isReadOnly(folder.file("case.xml"))) << "it was not read";
}

TEST_F(Roster, IsMadeWhenItIsNotThere) {
    EXPECT_TRUE(roster->AddStudent(folder.file("new.xml"), student(""), nullptr));
    EXPECT_EQ(
        folder.read("new.xml"),
        "<students autoStudentID=\"1\"><student><id>SID00001</id><name><first></first><last></last></name>"
        "<username></username></student></students>");
    EXPECT_EQ(errorNumber([&] { roster->AddStudent(folder.file("nowhere/r.xml"), student(""), nullptr); }),
              76);
    EXPECT_EQ(errorNumber([&] { roster->AddStudent("", student(""), nullptr); }), 76);
    folder.write("folder/inside", "");
    EXPECT_EQ(errorNumber([&] { roster->AddStudent(folder.file("folder"), student(""), nullptr); }), 70);
}

TEST_F(Roster, GivesUpAfterThreeWaits) {
    platform::setReadOnly(file, true);
    double now = 0;
    const ScopedClockSource clock({.secondsSinceMidnight = [&] { return now; },
                                   .uniformRandom = [] { return 0.2; },
                                   .seedRandom = [] {},
                                   .sleepFor = [&](std::chrono::milliseconds) { now += 0.005; }});
    EXPECT_FALSE(roster->AddStudent(file, student("", "new"), nullptr));
    EXPECT_NEAR(now, 3 * (3.0 - 2.75 * 0.2), 0.05);
    EXPECT_TRUE(platform::isReadOnly(file)) << "another's lock stays";
    EXPECT_EQ(errorNumber([&] { roster->Save(file, nullptr); }), 70);
    EXPECT_EQ(errorNumber([&] { roster->DeleteStudent(file, student("B", "bob"), nullptr); }), 70);
    EXPECT_TRUE(roster->ReplaceStudent(file, student("B"), nullptr)) << "its save's failure is passed over";
    EXPECT_THAT(stored(), ElementsAre("sid00042", "B", "C"));
}

TEST_F(Roster, WaitsByTheTimeOfDayAsItStands) {
    struct GivenUp {};
    platform::setReadOnly(file, true);
    constexpr double kDay = 86400;
    double elapsed = kDay - 2;
    const auto timeOfDay = [&] { return std::fmod(elapsed, kDay); };
    const ScopedClockSource clock({.secondsSinceMidnight = timeOfDay,
                                   .uniformRandom = [] { return 0.5; },
                                   .seedRandom = [] {},
                                   .sleepFor =
                                       [&](std::chrono::milliseconds) {
                                           elapsed += 0.25;
                                           if (elapsed > 3 * kDay)
                                               throw GivenUp();
                                       }});
    // The first wait ends before midnight, the second would end after it.
    EXPECT_THROW(roster->AddStudent(file, student("", "new"), nullptr), GivenUp);
    platform::setReadOnly(file, false);
    EXPECT_TRUE(roster->AddStudent(file, student("new", "new"), nullptr)) << "a free roster wants no clock";
}

TEST_F(Roster, NumbersBeyondFiveDigitsAndBelowZero) {
    const struct {
        const char* counter;
        const char* id;
    } cases[] = {{"8", "SID00009"},     {"9", "SID00010"},   {"999", "SID01000"},
                 {"12344", "SID12345"}, {"-5", "SID0000-4"}, {"32766", "SID32767"}};
    for (const auto& c : cases) {
        const std::string path =
            folder.write("case.xml", "<students autoStudentID='" + std::string(c.counter) + "'/>");
        const auto added = student("");
        EXPECT_TRUE(roster->AddStudent(path, added, nullptr));
        EXPECT_EQ(added->StudentID, c.id);
    }
    EXPECT_EQ(errorNumber([&] { roster->AddStudent(folder.file("case.xml"), student(""), nullptr); }), 6);
}

TEST_F(Roster, ReplacesAndDeletesWithoutALock) {
    EXPECT_TRUE(roster->ReplaceStudent(file, student("b", "robert", "Smith"), nullptr));
    EXPECT_EQ(roster->MatchUserName("bob")->LastName, "Smith")
        << "the former name finds the student until the next load";
    EXPECT_TRUE(roster->ReplaceStudent(file, student("new"), nullptr));
    EXPECT_FALSE(roster->MatchUserName("bob"));
    EXPECT_THAT(stored(), ElementsAre("sid00042", "C", "b", "new"));
    EXPECT_TRUE(roster->DeleteStudent(file, student("c"), nullptr));
    EXPECT_TRUE(roster->DeleteStudent(file, student("unknown"), nullptr));
    EXPECT_THAT(stored(), ElementsAre("sid00042", "b", "new"));
    EXPECT_FALSE(roster->DeleteStudent(folder.file("none.xml"), student("c"), nullptr));
    EXPECT_FALSE(roster->ReplaceStudent(folder.file("none.xml"), student("c"), nullptr));
}

TEST_F(Roster, SortsAndFilters) {
    roster->Load(file, nullptr);
    EXPECT_THAT(ids(roster->Sort("lastname", "", "")), ElementsAre("B", "C", "sid00042"))
        << "letter case is ignored, the earlier goes first";
    EXPECT_THAT(ids(roster->Sort("LastName", "", "studentid")), ElementsAre("B", "C", "sid00042"));
    EXPECT_THAT(ids(roster->Sort("username", "", "")), ElementsAre("C", "sid00042", "B"));
    EXPECT_EQ(errorNumber([&] { roster->Sort("email", "", ""); }), 9);
    EXPECT_THAT(ids(roster->Filter("COURSE", "BIO101", "", "", "", "")), ElementsAre("B"));
    EXPECT_THAT(ids(roster->Filter("course", "BIO101", "username", "alice", "", "")), ElementsAre());
    EXPECT_THAT(ids(roster->Filter("course", "BIO101", "", "x", "username", "alice")), ElementsAre("B"))
        << "no third without a second";
    EXPECT_EQ(errorNumber([&] { roster->Filter("email", "", "", "", "", ""); }), 9);
    roster->StudentMembers->Item("B")->LastName = "DE VRIES";
    const auto& third = roster->StudentMembers->Item("sid00042");
    third->LastName = "de vries";
    third->Course = "BIO101";
    EXPECT_THAT(ids(roster->Sort("lastname", "course", "username")), ElementsAre("C", "sid00042", "B"));
    EXPECT_THAT(ids(roster->Filter("lastname", "DE VRIES", "section", "", "course", "BIO101")),
                ElementsAre("B"));
    roster = New<Students>();
    EXPECT_EQ(roster->Sort("email", "", "")->Count(), 0);
    EXPECT_EQ(roster->Filter("email", "", "", "", "", "")->Count(), 0);
}

/// The order that a selection sort gives: the first of the smallest changes places with the one at hand.
void plainSelection(std::vector<Ref<Student>>& students) {
    for (size_t i = 0; i + 1 < students.size(); ++i) {
        size_t m = i;
        for (size_t j = i + 1; j < students.size(); ++j) {
            if (students[j]->LastName < students[m]->LastName)
                m = j;
        }
        std::swap(students[i], students[m]);
    }
}

TEST(StudentOrder, IsThatOfThePlainSelection) {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        std::vector<Ref<Student>> students(random() % 24);
        for (size_t position = 0; position < students.size(); ++position) {
            students[position] =
                student(std::to_string(position), "", std::string(1, static_cast<char>('A' + random() % 5)));
        }
        auto expected = students;
        plainSelection(expected);
        selectionSort(students, StudentFields::named("LASTNAME", "", ""));
        ASSERT_EQ(students, expected) << "round " << round;
    }
}

TEST(StudentOrder, TakesALargeRoster) {
    std::mt19937 random(11);
    const auto roster = New<Students>();
    std::vector<Ref<Student>> students(30000);
    for (size_t position = 0; position < students.size(); ++position)
        students[position] = student(std::to_string(position), "", std::to_string(random() % 9000));
    roster->Selectionsort(students, "lastname", "studentid", "");
    EXPECT_TRUE(std::ranges::is_sorted(
        students, {}, [](const Ref<Student>& one) { return std::pair(one->LastName, one->StudentID); }));
    students[7] = nullptr;
    EXPECT_EQ(errorNumber([&] { roster->Selectionsort(students, "lastname", "", ""); }), 91);
}

TEST(StudentOrder, SortsAClientsArrayFromIndexOne) {
    const auto roster = New<Students>();
    auto values = std::make_shared<Array>();
    const auto middle = student("1", "", "\U00010400"); // two UTF-16 units that sort before U+E000
    const auto last = student("2", "", "\uE000");
    const auto zebra = student("3", "", "zebra");
    values->elements = {Value("index 0 is not looked at"), last, middle, zebra};
    roster->Selectionsort(values, "lastname", "", "");
    EXPECT_EQ(values->at(1).toObject(), Ref<Object>(zebra));
    EXPECT_EQ(values->at(2).toObject(), Ref<Object>(middle));
    EXPECT_EQ(values->at(3).toObject(), Ref<Object>(last));
    values->elements = {Value("index 0"), Value("one alone is not looked at")};
    EXPECT_EQ(errorNumber([&] { roster->Selectionsort(values, "email", "", ""); }), 0);
    values->elements = {Value(), Value("no student"), Value(student("1"))};
    EXPECT_EQ(errorNumber([&] { roster->Selectionsort(values, "lastname", "", ""); }), 13);
    values->elements = {Value(), Value::nothing(), Value(student("1"))};
    EXPECT_EQ(errorNumber([&] { roster->Selectionsort(values, "lastname", "", ""); }), 91);
}

} // namespace
} // namespace norvakavlor
