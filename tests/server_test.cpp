#include "support/fixtures.h"
#include "support/servers.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/lessons/lesson.h>
#include <norvakavlor/lessons/lesson_menu.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/results/security.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/students/students.h>

/// kavlor-server as the library's clients meet it.
namespace norvakavlor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::kavlorFolder;
using testing::kavlorServer;
using testing::parsed;
using testing::RecordedMessages;
using testing::ServerFolder;
using ::testing::StartsWith;

platform::HttpReply post(const std::string& url, const std::string& body = {}) {
    return platform::sendHttp(
        {.url = url, .headers = {{"Content-Type", "application/x-www-form-urlencoded"}}, .body = body});
}

std::string student(const std::string& id, const std::string& course, const std::string& section) {
    return "<student><id>" + id + "</id><name><last>L</last><first>F</first></name><classRef>" + course +
           "</classRef><sectionRef>" + section + "</sectionRef><username>u" + id + "</username></student>";
}

const std::string& roster() {
    static const std::string text = "<students autoStudentID=\"7\">" + student("S1", "0", "0") +
                                    student("S2", "0", "1") + student("S3", "1", "0") + "</students>";
    return text;
}

std::string attempt(const std::string& results) {
    return "<exam pctCorrect=\"50\"><title>Cells</title><source>2</source>" + results + "</exam>";
}

std::string answered(const char* question, int correct) {
    return std::string("<questionRef correct=\"") + std::to_string(correct) +
           "\" attempts=\"1\" points=\"1\">" + question + "</questionRef>";
}

TEST(KavlorServer, RostersComeByParts) {
    const ServerFolder folder;
    folder.write("students.xml", roster());
    const struct {
        const char* course;
        const char* section;
        const char* student;
        std::vector<std::string> ids;
    } cases[] = {
        {"", "", "", {"S1", "S2", "S3"}}, {"0", "", "", {"S1", "S2"}}, {"", "0", "", {"S1", "S3"}},
        {"0", "1", "", {"S2"}},           {"", "", "s3", {"S3"}},      {"9", "", "", {}},
    };
    for (const auto& c : cases) {
        auto students = New<Students>();
        ASSERT_TRUE(
            students->LoadWithFilter(folder.url("students.xml"), nullptr, c.course, c.section, c.student));
        std::vector<std::string> ids;
        for (const Ref<Student>& one : *students->StudentMembers)
            ids.push_back(one->StudentID);
        EXPECT_EQ(ids, c.ids) << c.course << "/" << c.section << "/" << c.student;
    }
}

TEST(KavlorServer, AStudentLeavesTheRosterAndTheRosterStays) {
    const ServerFolder folder;
    folder.write("students.xml", roster());
    const RecordedMessages messages;
    auto students = New<Students>();
    students->Load(folder.url("students.xml"), nullptr);
    EXPECT_TRUE(
        students->DeleteStudent(folder.url("students.xml"), students->StudentMembers->Item("S2"), nullptr));
    EXPECT_EQ(folder.read("students.xml"), "<students autoStudentID=\"7\">" + student("S1", "0", "0") +
                                               student("S3", "1", "0") + "</students>");
    // Without an ID, or without a roster, nothing goes and the user learns why.
    EXPECT_FALSE(students->DeleteStudent(folder.url("students.xml"), New<Student>(), nullptr));
    EXPECT_FALSE(
        students->DeleteStudent(folder.url("none.xml"), students->StudentMembers->Item("S1"), nullptr));
    EXPECT_EQ(messages.all().size(), 2u);

    auto added = New<Student>();
    added->UserName = "new";
    EXPECT_TRUE(students->AddStudent(folder.url("fresh.xml"), added, nullptr));
    EXPECT_THAT(folder.read("fresh.xml"), HasSubstr("<id>" + added->StudentID + "</id>"));
}

TEST(KavlorServer, ListsByTypeAndStudent) {
    const ServerFolder folder;
    for (const char* name : {"x_kvqm.xml", "x_kvqm_A_01.xml", "x_kvqm_A_02.xml", "x_kvqm_B_01.xml"})
        folder.write(name, attempt(answered("Q7", 1)));
    folder.write("bad_kvqm.xml", "<exam");
    folder.write("odd_kvqm_C_01.xml", "<exam pctCorrect=\"much\"><title>A; B</title></exam>");
    for (const char* name : {"y_kvl.xml", "y_kvl_A.xml"})
        folder.write(name, "<lesson><title>Y</title></lesson>");
    folder.write("z_LM.xml", "<lessonMenu><title>Menu</title></lessonMenu>");

    auto exam = New<Exam>();
    auto lesson = New<Lesson>();
    const auto names = [](const Ref<KeyedCollection<TitleFilename>>& rows) {
        std::vector<std::string> result;
        for (const Ref<TitleFilename>& row : *rows)
            result.push_back(row->Filename);
        return result;
    };
    EXPECT_THAT(names(exam->GetExams(folder.url(), 1)), ElementsAre("x_kvqm.xml"));
    EXPECT_EQ(exam->GetExams(folder.url(), 2)->Count(), 4);
    EXPECT_EQ(exam->GetExams(folder.url(), -1)->Count(), 5);
    EXPECT_EQ(exam->GetExams(folder.url(), 5)->Count(), 0);
    EXPECT_THAT(names(exam->GetStudentExams(folder.url(), "A")), ElementsAre("x_kvqm_A_01.xml"));
    EXPECT_THAT(names(lesson->GetLessons(folder.url(), 1)), ElementsAre("y_kvl.xml"));
    EXPECT_THAT(names(lesson->GetLessons(folder.url(), 2)), ElementsAre("y_kvl_A.xml"));
    EXPECT_THAT(names(New<LessonMenu>()->GetLessonMenus(folder.url())), ElementsAre("z_LM.xml"));

    std::vector<std::string> rows;
    const auto attempts = exam->GetExamInfo(folder.url(), "a", 2);
    for (const Ref<ExamInfo>& row : *attempts) {
        rows.push_back(row->Title + "|" + row->Filename + "|" + std::to_string(row->Attempt) + "|" +
                       std::to_string(static_cast<int>(row->PctCorrect)) + "|" + row->FirstQuestionID);
    }
    EXPECT_THAT(rows, ElementsAre("Cells|x_kvqm_A_01.xml|1|50|Q7", "Cells|x_kvqm_A_02.xml|2|50|Q7"));
    // What a document says wrongly is left empty and breaks no row.
    const auto odd = exam->GetExamInfo(folder.url(), "C", 2);
    ASSERT_EQ(odd->Count(), 1);
    EXPECT_EQ(odd->Item(1)->Title, "A, B");
    EXPECT_EQ(odd->Item(1)->PctCorrect, 0);
}

TEST(KavlorServer, SumsUpTheAttemptsOfAClass) {
    const ServerFolder folder;
    folder.write("students.xml", roster());
    folder.write("x_kvqm.xml", "<exam ID=\"E1\"><title>Cells</title></exam>");
    folder.write("x_kvqm_S1_01.xml", attempt(answered("Q1", 1) + answered("Q2", 0)));
    folder.write("x_kvqm_S2_01.xml", attempt(answered("Q1", 0)));
    folder.write("x_kvqm_S3_01.xml", attempt(answered("Q3", 1)));
    const struct {
        const char* course;
        const char* section;
        const char* summary;
    } cases[] = {
        {"0", "", "Q1 1/2 Q2 0/1 "},
        {"0", "0", "Q1 1/1 Q2 0/1 "},
        {"", "", "Q1 1/2 Q2 0/1 Q3 1/1 "},
        {"9", "", ""},
    };
    for (const auto& c : cases) {
        auto exam = New<Exam>();
        ASSERT_TRUE(exam->LoadExamSummary(folder.url("students.xml"), nullptr, nullptr,
                                          folder.url("x_kvqm.xml"), 1, c.course, c.section));
        std::string summary;
        for (const Ref<Question>& question : *exam->Questions)
            summary += question->ID + " " + std::to_string(question->Correct) + "/" +
                       std::to_string(question->Attempts) + " ";
        EXPECT_EQ(summary, c.summary);
        EXPECT_EQ(exam->ID + exam->Title, "E1Cells");
    }
    // A second summary counts on top; what there is neither exam nor attempt of has none.
    auto exam = New<Exam>();
    for (int call = 0; call < 2; ++call)
        exam->LoadExamSummary("", nullptr, nullptr, folder.url("x_kvqm.xml"), 1, "0", "0");
    EXPECT_EQ(exam->Questions->Item("Q1")->Correct + exam->Questions->Item("Q1")->Attempts, 4);
    EXPECT_FALSE(exam->LoadExamSummary("", nullptr, nullptr, folder.url("no/x_kvqm.xml"), 1, "", ""));
    EXPECT_FALSE(exam->LoadExamSummary("", nullptr, nullptr, folder.url("y_kvqm.xml"), 1, "", ""));
}

TEST(KavlorServer, NoNameLeavesItsFolder) {
    const ServerFolder folder;
    folder.write("x.xml", "<x/>");
    const std::string outside = "%2e%2e%2f";
    const std::string tries[] = {
        folder.url() + "LoadKavlorObject.asp?ObjName=X&FileName=../" + "x.xml",
        folder.url() + "LoadKavlorObject.asp?ObjName=X&FileName=" + outside + "x.xml",
        folder.url() + "LoadKavlorObject.asp?ObjName=X&FileName=..%5Cx.xml",
        folder.url() + "LoadKavlorObject.asp?ObjName=X&FileName=/etc/hostname",
        folder.url() + "LoadKavlorObject.asp?ObjName=X&FileName=x.xml%00.xml",
        folder.url() + "LoadKavlorObject.asp?ObjName=X&FileName=..",
        folder.url() + "LoadKavlorObject.asp?ObjName=X&FileName=",
        folder.url() + "LoadKavlorObject.asp?FileName=x.xml",
        folder.url() + "../../LoadKavlorObject.asp?ObjName=X&FileName=kavlor-server.log",
        folder.url() + outside + outside + "LoadKavlorObject.asp?ObjName=X&FileName=kavlor-server.log",
        folder.url() + "SaveKavlorObject.asp?ObjName=X&FileName=../new.xml",
        folder.url() + "SaveKavlorObject.asp?ObjName=X&FileName=.new.xml.0123456789abcdef.nktmp",
        folder.url() + "none/SaveKavlorObject.asp?ObjName=X&FileName=new.xml",
        folder.url() + "DeleteKavlorObject.asp?ObjName=X&FileName=*.xml",
        folder.url() + "DeleteKavlorObject.asp?ObjName=X&FileName=../" + "x.xml",
        folder.url() + "GetTitleFileNames.asp?",
        kavlorServer() + "../GetTitleFileNames.asp?ObjName=X&",
        kavlorServer() + "gradebook/GetTitleFileNames.asp?ObjName=X&",
        kavlorServer() + "GradeBook/SaveKavlorObject.asp?ObjName=X&FileName=new.xml",
        kavlorServer() + "NoSuchEndpoint.asp",
    };
    for (const std::string& url : tries) {
        const platform::HttpReply reply = post(url, "<new/>");
        EXPECT_GE(reply.status, 400) << url;
        EXPECT_FALSE(reply.text.empty()) << url;
        EXPECT_EQ(reply.text.find('<'), std::string::npos) << url;
    }
    EXPECT_EQ(folder.read("x.xml"), "<x/>");
    EXPECT_EQ(folder.read("../new.xml"), "(no file)");
}

TEST(KavlorServer, ASaveIsWholeOrNotAtAll) {
    const ServerFolder folder;
    folder.write("x.xml", "<old/>");
    const std::string save = folder.url() + "SaveKavlorObject.asp?ObjName=X&FileName=x.xml";
    for (const std::string& body : {std::string("<cut"), std::string(), std::string("no document"),
                                    std::string("<!DOCTYPE a><a/>"), std::string((64u << 20) + 1, ' ')}) {
        EXPECT_FALSE(post(save, body).text.empty()) << body.size();
        EXPECT_EQ(folder.read("x.xml"), "<old/>");
    }
    EXPECT_EQ(post(save, "<new a='\xC3\xBC'>\r\n</new>").text, "");
    EXPECT_EQ(folder.read("x.xml"), "<new a='\xC3\xBC'>\r\n</new>");
}

TEST(KavlorServer, GivesLaunchDocumentsWithItsOwnAddress) {
    const ServerFolder folder;
    folder.write("launch.xml", "<ORBEX_INPUTS>{server}/gradebook</ORBEX_INPUTS>");
    folder.write("students.xml", "<students/>");
    const auto get = [](const std::string& url) { return platform::sendHttp({.method = "GET", .url = url}); };
    const std::string address = kavlorServer().substr(0, kavlorServer().size() - 1);
    EXPECT_EQ(get(folder.url("launch.xml") + "?key=dracoqz1").text,
              "<ORBEX_INPUTS>" + address + "/gradebook</ORBEX_INPUTS>");
    for (const std::string& name : {std::string("none.xml"), std::string("students.xml"), std::string(),
                                    std::string("../gradebook/posts.txt")})
        EXPECT_EQ(get(folder.url(name)).status, 404) << name;
}

TEST(KavlorServer, KeepsWhatWasPostedToTheGradebook) {
    const std::string long_(9000, 'x');
    const std::string body = "&student_id=S 1&key=k+%41&name=\xC3\xBC\r\n\xFF" + std::string(1, '\0') + long_;
    EXPECT_EQ(post(kavlorServer() + "gradebook", body).text, "success");
    EXPECT_EQ(post(kavlorServer() + "gradebook-backup?key=secret", "second").text, "success");
    std::ifstream index(std::filesystem::path(kavlorFolder()) / "gradebook/posts.txt");
    std::vector<std::string> lines;
    for (std::string line; std::getline(index, line);)
        lines.push_back(line);
    ASSERT_GE(lines.size(), 2u);
    const std::string& first = lines[lines.size() - 2];
    EXPECT_EQ(first.substr(4),
              " /gradebook application/x-www-form-urlencoded " + std::to_string(body.size()));
    EXPECT_EQ(lines.back().substr(4), " /gradebook-backup?key=*** application/x-www-form-urlencoded 6");
    std::ifstream record(std::filesystem::path(kavlorFolder()) / "gradebook" / (first.substr(0, 4) + ".txt"),
                         std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(record), {}), body);
}

} // namespace
} // namespace norvakavlor
