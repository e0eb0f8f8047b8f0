#include "support/fixtures.h"
#include "support/servers.h"

#include <gmock/gmock.h>
#include <norvakavlor/lessons/lesson.h>
#include <norvakavlor/lessons/lesson_files.h>
#include <norvakavlor/lessons/lesson_menu.h>
#include <norvakavlor/lessons/tutorial.h>
#include <norvakavlor/text/convert.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::ElementsAre;

Ref<TaskPool> taskPool() {
    auto pool = New<TaskPool>();
    const xml::Document document = parsed("<taskPool><task><id>t1</id><taskName>Sum</taskName></task>"
                                          "<task><id>t2</id><taskName>Chart</taskName></task></taskPool>");
    pool->LoadFromXMLNode(document.root(), nullptr);
    return pool;
}

std::string lessonText(const Lesson& lesson) {
    return written("lesson", [&](xml::Document&, xml::Node root) { lesson.SaveToXMLNode(root); });
}

TEST(LessonFiles, BelongToTheirTypes) {
    const struct {
        const char* name;
        bool all;
        bool authored;
        bool copy;
    } cases[] = {
        {"x_kvl.xml", true, true, false},    {"x_kvl_SID00001.xml", true, false, true},
        {"x_kvl.XML", false, false, false},  {"x_KVL_S1.xml", false, false, false},
        {"x_kvlS1.xml", true, false, false}, {"x_kvl_y_kvl.xml", true, true, false},
        {"x.xml", false, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(isLessonFile(c.name, -1), c.all);
        EXPECT_EQ(isLessonFile(c.name, 1), c.authored);
        EXPECT_EQ(isLessonFile(c.name, 2), c.copy);
        EXPECT_FALSE(isLessonFile(c.name, 0));
    }
}

TEST(LessonFiles, HaveCopiesNamedBeforeTheirLastFourLetters) {
    EXPECT_EQ(studentCopyName("x_kvl.xml", "S1"), "x_kvl_S1.xml");
    EXPECT_EQ(studentCopyName("x_kvl.xmü", "S1"), "x_kvl_S1.xmü");
    EXPECT_EQ(studentCopyName("äöü", "S1"), "_S1äöü");
}

TEST(Lesson, ReadsOlderNamesAndWritesTheNewOnes) {
    const struct {
        const char* attributes;
        const char* externalID;
        bool completed;
    } cases[] = {
        {"external_id='old' completed='true'", "old", true},
        {"EXTERNAL_ID='new' external_id='old' COMPLETED='false' completed='true'", "new", false},
        {"COMPLETED='True'", "", false},
        {"COMPLETED='1' completed='true'", "", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.attributes);
        const auto lesson = New<Lesson>();
        const xml::Document document = parsed("<lesson " + std::string(c.attributes) + "/>");
        lesson->LoadFromXMLNode(document.root(), nullptr, "x_kvl.xml");
        EXPECT_EQ(lessonText(*lesson), "<lesson ID=\"\" EXTERNAL_ID=\"" + std::string(c.externalID) +
                                           "\" COMPLETED=\"" + (c.completed ? "true" : "false") +
                                           "\"><title></title><source>0</source><taskList/></lesson>");
    }
}

TEST(Lesson, CopiesThePoolsTasks) {
    const auto pool = taskPool();
    const auto lesson = New<Lesson>();
    const char* text =
        "<lesson ID='L1'><title>Sheets</title><source>2</source><taskList>"
        "<taskRef completed='3/14/2004 2:05:09 PM'>T1</taskRef><taskRef>t2</taskRef></taskList>"
        "<lessonAssignment><lessonRef>x_kvl.xml</lessonRef><classRef>3</classRef><sectionRef>0</sectionRef>"
        "</lessonAssignment><lessonAssignment/></lesson>";
    const xml::Document document = parsed(text);
    lesson->LoadFromXMLNode(document.root(), pool.get(), "http://server/app/x");
    EXPECT_EQ(lesson->LessonFilename, "x") << "on the web the name stays as it is";
    EXPECT_EQ(lesson->Tasks->Item("t1")->TaskName, "Sum");
    EXPECT_EQ(pool->Tasks->Item("t1")->CompletionDate, Date{});
    EXPECT_FALSE(lesson->CalcLessonComplete());
    EXPECT_EQ(
        lessonText(*lesson),
        R"(<lesson ID="L1" EXTERNAL_ID="" COMPLETED="false"><title>Sheets</title><source>2</source><taskList>)"
        R"(<taskRef completed="3/14/2004 2:05:09 PM">t1</taskRef><taskRef completed="12:00:00 AM">t2</taskRef></taskList>)"
        R"(<lessonAssignment><lessonRef>x_kvl.xml</lessonRef><classRef>3</classRef><sectionRef>0</sectionRef></lessonAssignment>)"
        R"(<lessonAssignment><lessonRef></lessonRef><classRef></classRef><sectionRef></sectionRef></lessonAssignment></lesson>)");
    lesson->Tasks->Item("t2")->CompletionDate = toDate("2004-03-15");
    EXPECT_TRUE(lesson->CalcLessonComplete());
}

TEST(Lesson, RaisesAndKeepsTheTasksBefore) {
    const auto pool = taskPool();
    const struct {
        const char* second;
        int error;
    } cases[] = {
        {"<taskRef>t9</taskRef>", 5},
        {"<taskRef>T1</taskRef>", 457},
        {"<taskRef completed='14.03.2004'>t2</taskRef>", 13},
        {"<taskRef completed=''>t2</taskRef>", 13},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.second);
        const auto lesson = New<Lesson>();
        const xml::Document document = parsed("<lesson><taskList><taskRef>t1</taskRef>" +
                                              std::string(c.second) + "</taskList></lesson>");
        EXPECT_EQ(errorNumber([&] { lesson->LoadFromXMLNode(document.root(), pool.get(), "x"); }), c.error);
        EXPECT_EQ(lesson->Tasks->Count(), 1);
    }
}

TEST(Lesson, LeavesNoStaleCopy) {
    const TemporaryFolder folder;
    folder.write("old_kvl.xml", "<lesson/>");
    const auto lesson = New<Lesson>();
    ASSERT_TRUE(lesson->Load(folder.file("old_kvl.xml"), nullptr));
    EXPECT_TRUE(lesson->Save(folder.file("new_kvl.xml"), true));
    EXPECT_THAT(folder.names(), ElementsAre("new_kvl.xml"));
    EXPECT_TRUE(lesson->Save(folder.file("third_kvl.xml"), true));
    EXPECT_THAT(folder.names(), ElementsAre("new_kvl.xml", "third_kvl.xml"));
    ASSERT_TRUE(lesson->Load(folder.file("new_kvl.xml"), nullptr));
    folder.write("bad_kvl.xml", "<lesson><source>x</source></lesson>");
    EXPECT_EQ(errorNumber([&] { lesson->Load(folder.file("bad_kvl.xml"), nullptr); }), 13);
    EXPECT_TRUE(lesson->Save(folder.file("fourth_kvl.xml"), true));
    EXPECT_TRUE(folder.has("new_kvl.xml") && folder.has("bad_kvl.xml")) << "neither is what was saved";
    EXPECT_TRUE(lesson->CalcLessonFileComplete(folder.file("missing_kvl.xml"), nullptr));
    EXPECT_EQ(errorNumber([&] { lesson->Delete(folder.file("missing_kvl.xml")); }), 53);
}

constexpr const char* kStandInRefused =
    "70|NorvaKavlor|There is a copy of this lesson that could not be read before. Load the menu again.";

/// The authored lesson as a menu gives it to a student whose copy did not load.
Ref<Lesson> standIn(const TemporaryFolder& folder, const std::string& saveDir) {
    folder.write("authored/a_kvl.xml", "<lesson ID=\"L\"/>");
    const auto tutorial = New<Tutorial>();
    const xml::Document document =
        parsed("<tutorial><lessonList><lessonFile>a_kvl.xml</lessonFile></lessonList></tutorial>");
    EXPECT_TRUE(
        tutorial->LoadFromXMLNode(document.root(), folder.path() + "authored", nullptr, "S1", saveDir));
    return tutorial->Lessons->Item(1);
}

TEST(Lesson, AStandInNeverOverwritesAStudentsCopy) {
    const TemporaryFolder folder;
    const std::string name = "a_kvl_S1.xml";
    const std::string copy = folder.write(name, "<lesson>");
    // What does not parse is kept beside it, and nothing that was kept so is written over.
    for (const char* kept : {"a_kvl_S1.xml.unreadable", "a_kvl_S1.xml.unreadable2"}) {
        folder.write(name, std::string("<lesson>") + kept);
        const auto lesson = standIn(folder, folder.path());
        EXPECT_EQ(lesson->LessonFilename, name);
        EXPECT_TRUE(lesson->Save(copy, false) && lesson->Save(copy, false)) << "looked at once";
        EXPECT_EQ(folder.read(kept), std::string("<lesson>") + kept);
        EXPECT_NE(folder.read(name).find("<lesson ID=\"L\""), std::string::npos);
    }
    folder.write(name, "");
    const auto late = standIn(folder, folder.path());
    folder.write(name, "<lesson ID=\"finished\"/>");
    EXPECT_TRUE(late->Save(folder.file("elsewhere_kvl.xml"), false));
    EXPECT_EQ(raised([&] { late->Save(folder.path() + "./" + name, false); }), kStandInRefused);
    EXPECT_EQ(folder.read(name), "<lesson ID=\"finished\"/>");
    std::filesystem::remove(folder.file(name));
    EXPECT_TRUE(late->Save(copy, false)) << "nothing is there";
}

TEST(LessonsOnTheWeb, AStandInSavesOnlyWhereThereIsSurelyNoCopy) {
    const TemporaryFolder folder;
    const struct {
        const char* first;  ///< status and text when the menu loads
        const char* second; ///< and when the stand-in is saved
        bool saves;
    } cases[] = {
        {"503busy", "503busy", false},    {"404", "404", true},      {"500", "200", true},
        {"200", "200<lesson%2F>", false}, {"401no", "401no", false}, {"200x", "429wait", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.second);
        // The copy is asked for once by the menu and once by the save.
        const std::string base = misbehaving(std::string("turns/") + c.first + "/" + c.second) + "x/";
        const auto lesson = standIn(folder, base);
        EXPECT_EQ(raised([&] { lesson->Save(base + "a_kvl_S1.xml", false); }),
                  c.saves ? "nothing" : kStandInRefused);
    }
    const auto unreachable = standIn(folder, refusingServer());
    EXPECT_EQ(raised([&] { unreachable->Save(refusingServer() + "a_kvl_S1.xml", false); }), kStandInRefused);
}

TEST(Lesson, FindsAStudentsCopies) {
    const TemporaryFolder folder;
    const std::string done =
        "<lesson><taskList><taskRef completed='3/14/2004'>t1</taskRef></taskList></lesson>";
    const std::string open =
        "<lesson><taskList><taskRef completed='12:00:00 AM'>t1</taskRef></taskList></lesson>";
    folder.write("a_kvl.xml", open);
    folder.write("a_kvl_S1.xml", done);
    folder.write("b_kvl_S1.xml", open);
    folder.write("a_kvl_S2.xml", open);
    folder.write("c_kvl_S1.xml", "<lesson><taskList><taskRef>t9</taskRef></taskList></lesson>");
    folder.write("d_kvl_S1.xml", "<lesson");
    const auto pool = taskPool();
    const auto copies = [&](const char* student, const Value& completed) {
        std::string names;
        const auto lessons = New<Lesson>()->GetStudentLessons(folder.path(), student, completed, pool.get());
        for (const Ref<Lesson>& lesson : *lessons)
            names += lesson->LessonFilename + " ";
        return names;
    };
    EXPECT_EQ(copies("S1", Value()), "a_kvl_S1.xml b_kvl_S1.xml ");
    EXPECT_EQ(copies("S1", Value::Null()), "a_kvl_S1.xml b_kvl_S1.xml ");
    EXPECT_EQ(copies("S1", true), "a_kvl_S1.xml ");
    EXPECT_EQ(copies("S1", false), "b_kvl_S1.xml ");
    EXPECT_EQ(copies("", Value()), "a_kvl_S1.xml a_kvl_S2.xml b_kvl_S1.xml ");
    EXPECT_EQ(copies("1", Value()), "") << "the identifier is the whole part between the marks";
    EXPECT_EQ(New<Lesson>()->GetLessons(folder.path(), 1)->Count(), 1);

    const ServerFolder server;
    server.write("a_kvl_S1.xml", "<lesson ID='1'/>");
    server.write("in/a_kvl_S1.xml", "<lesson ID='another'/>");
    for (const std::string& directory : {server.url(), server.url("in")}) {
        const auto lessons = New<Lesson>()->GetStudentLessons(directory, "S1", Value(), nullptr);
        ASSERT_EQ(lessons->Count(), 1) << directory;
        EXPECT_EQ(lessons->Item(1)->LessonID, "1") << "loaded from where it was listed";
    }
}

TEST(LessonsOnTheWeb, AreNamedByTheirKinds) {
    const std::string base = misbehaving("reply/") + "?site=3/";
    const auto lesson = New<Lesson>();
    const auto menu = New<LessonMenu>();
    const RecordedMessages messages;
    const struct {
        std::function<void()> act;
        const char* ordinary;
        const char* textbook;
    } cases[] = {
        {[&] { lesson->Load(base + "x.xml", nullptr); },
         "LoadKavlorObject.asp?ObjName=Lesson&FileName=x.xml&site=3",
         "LoadKavlorObject.asp?ObjName=TextbookLesson&FileName=x.xml&site=3"},
        {[&] { lesson->GetLessons(base, 2); }, "GetTitleFileNames.asp?ObjName=Lesson&LessonType=2&site=3&",
         "GetTitleFileNames.asp?ObjName=TextbookLesson&LessonType=2&site=3&"},
        {[&] { menu->Load(base + "x.xml", "", nullptr, "", ""); },
         "LoadKavlorObject.asp?ObjName=LessonMenu&Type=LessonMenu&FileName=x.xml&site=3",
         "LoadKavlorObject.asp?ObjName=LessonMenu&Type=TextbookLessonMenu&FileName=x.xml&site=3"},
        {[&] { menu->Save(base + "x.xml"); }, "SaveKavlorObject.asp?ObjName=LessonMenu&FileName=x.xml&site=3",
         "SaveKavlorObject.asp?ObjName=LessonMenu&FileName=x.xml&site=3"},
        {[&] { menu->GetLessonMenus(base); }, "GetTitleFileNames.asp?ObjName=LessonMenu&",
         "GetTitleFileNames.asp?ObjName=TextbookLessonMenu&"},
    };
    for (const int16_t objType : {int16_t{1}, int16_t{2}}) {
        lesson->LessonObjType = objType;
        menu->LessonMenuObjType = objType;
        for (const auto& c : cases) {
            receivedRequests();
            c.act();
            const std::string target = objType == 2 ? c.textbook : c.ordinary;
            EXPECT_THAT(receivedRequests(), ElementsAre(::testing::HasSubstr("/" + target + " ")));
        }
    }
}

/// A menu with two tutorials, its lessons in two directories, a student's copy of one.
class LessonMenus : public ::testing::Test {
protected:
    void SetUp() override {
        folder.write(
            "menu_LM.xml",
            "<lessonMenu><title>Menu</title><tutorialList>"
            "<tutorial type='noexpand'><title>One</title><lessonList><lessonFile>x_kvl.xml</lessonFile>"
            "<lessonFile>y_kvl.xml</lessonFile></lessonList></tutorial>"
            "<tutorial spacer='TRUE'/><tutorial type='single' spacer='1'/></tutorialList></lessonMenu>");
        folder.write("one/x_kvl.xml", "<lesson ID='x'/>");
        folder.write("two/x_kvl.xml", "<lesson ID='second x'/>");
        folder.write("two/y_kvl.xml", "<lesson ID='y'/>");
        folder.write("saved/x_kvl_S1.xml", "<lesson ID='copy of x'/>");
    }
    std::string directories() const { return folder.file("one") + ";" + folder.file("two\\"); }

    TemporaryFolder folder;
    Ref<LessonMenu> menu = New<LessonMenu>();
};

TEST_F(LessonMenus, LoadWithLessonsAndCopies) {
    ASSERT_TRUE(menu->Load(folder.file("menu_LM.xml"), directories(), nullptr, "S1", folder.file("saved")));
    ASSERT_EQ(menu->Tutorials->Count(), 3);
    const Tutorial& tutorial = *menu->Tutorials->Item(1);
    EXPECT_EQ(tutorial.TutorialType, 1);
    EXPECT_TRUE(menu->Tutorials->Item(2)->Spacer);
    EXPECT_EQ(tutorial.Lessons->Item(1)->LessonID, "copy of x")
        << "the copy takes the authored lesson's place";
    EXPECT_EQ(tutorial.Lessons->Item(2)->LessonID, "y");
    EXPECT_EQ(tutorial.Lessons->Item(2)->LessonFilename, "y_kvl_S1.xml") << "saving it makes the copy";
    EXPECT_EQ(tutorial.LessonTitleFiles->Item(1)->Directory, folder.file("one/"));

    EXPECT_TRUE(menu->Save(folder.file("saved_lm.xml")));
    EXPECT_EQ(
        folder.read("saved_lm.xml"),
        R"(<lessonMenu><title>Menu</title><tutorialList><tutorial type="noexpand"><title>One</title><lessonList>)"
        R"(<lessonFile>x_kvl.xml</lessonFile><lessonFile>y_kvl.xml</lessonFile></lessonList></tutorial>)"
        R"(<tutorial type="normal" spacer="true"><title></title><lessonList/></tutorial>)"
        R"(<tutorial type="single" spacer="true"><title></title><lessonList/></tutorial></tutorialList></lessonMenu>)");
    EXPECT_EQ(menu->GetLessonMenus(folder.path())->Count(), 2);
}

TEST_F(LessonMenus, WithoutDirectoriesHaveFileNamesAlone) {
    ASSERT_TRUE(menu->Load(folder.file("menu_LM.xml"), std::nullopt, nullptr, "S1", ""));
    EXPECT_EQ(menu->Tutorials->Item(1)->Lessons->Item(2)->LessonFilename, "y_kvl.xml");
    EXPECT_TRUE(menu->Tutorials->Item(1)->LessonTitleFiles->empty());
}

TEST_F(LessonMenus, EndWithFalseAtALessonThatDoesNotLoad) {
    EXPECT_FALSE(menu->Load(folder.file("menu_LM.xml"), folder.file("one"), nullptr, "", ""));
    EXPECT_TRUE(menu->Tutorials->empty());
    const auto tutorial = New<Tutorial>();
    const xml::Document document =
        parsed("<tutorial type='NoExpand' spacer='yes'><lessonList><lessonFile>x_kvl.xml</lessonFile>"
               "<lessonFile>../two/y_kvl.xml</lessonFile></lessonList></tutorial>");
    EXPECT_FALSE(tutorial->LoadFromXMLNode(document.root(), folder.file("one"), nullptr, "", ""));
    EXPECT_EQ(tutorial->Lessons->Count(), 1)
        << "a name that leaves its folder is not found; what was loaded stays";
    EXPECT_EQ(tutorial->TutorialType, 0);
    EXPECT_FALSE(tutorial->Spacer);
    EXPECT_FALSE(menu->Load(folder.file("missing_lm.xml"), std::nullopt, nullptr, "", ""));
}

TEST_F(LessonMenus, OfATextbookHaveATextbooksLessons) {
    menu->LessonMenuObjType = 2;
    ASSERT_TRUE(menu->Load(folder.file("menu_LM.xml"), directories(), nullptr, "", ""));
    EXPECT_EQ(menu->Tutorials->Item(1)->LessonObjType, 2);
    ASSERT_TRUE(menu->Load(folder.file("menu_LM.xml"), std::nullopt, nullptr, "", ""));
    for (const int position : {1, 4}) // with directories and without
        EXPECT_EQ(menu->Tutorials->Item(position)->Lessons->Item(1)->LessonObjType, 2);
}

} // namespace
} // namespace norvakavlor
