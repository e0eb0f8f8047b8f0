#include "support/fixtures.h"
#include "support/servers.h"

#include <gmock/gmock.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/crypto/encryption.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/results/gradium_exam.h>
#include <norvakavlor/results/gradium_lesson.h>
#include <norvakavlor/results/security.h>
#include <norvakavlor/text/convert.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string bodyOf(const std::string& request) { return request.substr(request.find("\r\n\r\n") + 4); }

/// Forgets the handshake at the end of a test, so that the next one begins as a new client does.
class Handshake : public ::testing::Test {
protected:
    ~Handshake() override { security->SetValidationString(""); }
    Ref<Security> security = New<Security>();
};

TEST_F(Handshake, IsTrueForExactlyValidated) {
    receivedRequests();
    const std::string abc = "LoginKey=abc&LoginValue=900150983cd24fb0d6963f7d28e17f72";
    const struct {
        std::string server;
        bool validated;
        std::string stored;
    } cases[] = {
        {misbehaving("reply/abc"), false, abc},
        {misbehaving("reply/Validated"), true,
         "LoginKey=Validated&LoginValue=" + EncryptPassword("Validated")},
        {misbehaving("reply/validated"), false,
         "LoginKey=validated&LoginValue=" + EncryptPassword("validated")},
        {misbehaving("reply/Validated%0A"), false,
         "LoginKey=Validated\n&LoginValue=" + EncryptPassword("Validated\n")},
        {misbehaving("status/404/Validated"), false, "before"},
        {"local/folder", true, "before"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.server);
        security->SetValidationString("before");
        EXPECT_EQ(security->Login(c.server), c.validated);
        EXPECT_EQ(New<Security>()->ValidationString(), c.stored) << "shared by every object";
    }
    const auto requests = receivedRequests();
    ASSERT_EQ(requests.size(), 9u);
    EXPECT_EQ(requestLine(requests[0]), "POST /reply/abc/LoginKey.asp");
    EXPECT_EQ(requestLine(requests[1]), "POST /reply/abc/Login.asp?" + abc);
    security->SetValidationString("before");
    EXPECT_NE(errorNumber([&] { security->Login(refusingServer()); }), 0);
    EXPECT_NE(errorNumber([&] { security->Login(misbehaving("hang-up")); }), 0);
    EXPECT_EQ(security->ValidationString(), "before");
    EXPECT_TRUE(security->Login(kavlorServer()));
}

TEST_F(Handshake, ChecksPairs) {
    EXPECT_TRUE(security->ValidateLoginKey("abc", "900150983cd24fb0d6963f7d28e17f72"));
    EXPECT_FALSE(security->ValidateLoginKey("abc", "900150983CD24FB0D6963F7D28E17F72"));
    EXPECT_FALSE(security->ValidateLoginKey("", EncryptPassword("")));
    EXPECT_FALSE(security->ValidateLoginKey(std::string(300, 'a'), ""));
}

constexpr const char* kRecord =
    "<ORBEX_INPUTS><COURSE_LIST><COURSE ID=\"C 1\"><str_Name>Office &amp; more</str_Name>"
    "<SUBMIT_HOST_V3>host</SUBMIT_HOST_V3><SUBMIT_HOST_V3_BACKUP>backup</SUBMIT_HOST_V3_BACKUP>"
    "<CURRENT_LOCATION> Week 7 </CURRENT_LOCATION><STUDENT ID=\"S1\"><str_FirstName>Ann</str_FirstName>"
    "<str_LastName>Lee</str_LastName></STUDENT><INSTRUCTOR><str_FirstName>Rosa</str_FirstName><str_LastName>"
    "</str_LastName><HOST>h</HOST></INSTRUCTOR>";

/// An exam with two questions, launched with the default key for the student S1.
class Gradebook : public Handshake {
protected:
    void SetUp() override {
        folder.write("launch.xml",
                     std::string(kRecord) +
                         "<EXAM_LIST><EXAM ID='E1' EXTERNAL_ID='A&amp;1' timeExpired='7'><title>T</title>"
                         "<questionRef correct='5' attempts='1'>q1</questionRef>"
                         "<questionRef correct='-1' attempts='2'>q2</questionRef></EXAM></EXAM_LIST>"
                         "</COURSE></COURSE_LIST></ORBEX_INPUTS>");
        ASSERT_TRUE(exam->Load(folder.file("launch.xml"), nullptr, "none"));
        receivedRequests();
    }

    TemporaryFolder folder;
    Ref<GradiumExam> exam = New<GradiumExam>();
};

TEST_F(Gradebook, GetsAnExamsResultUnescaped) {
    exam->SubmitHost = misbehaving("reply/success") + "x y?a=1";
    exam->theExam()->Questions->Item("q1")->Remediation = "50% & more = ü";
    ASSERT_TRUE(exam->Save("", false));
    const auto requests = receivedRequests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requestLine(requests[0]), "POST /reply/success/x%20y?a=1");
    EXPECT_NE(requests[0].find("Content-Type: application/x-www-form-urlencoded\r\n"), std::string::npos)
        << requests[0];
    EXPECT_EQ(bodyOf(requests[0]),
              "&student_id=S1&exam_id=E1&assignment_id=A&1&ttTaskTime=7&key=dracoqz1"
              "&question_id0=q1&document_score0=5&attempts0=1&remediation0=50% & more = ü"
              "&question_id1=q2&document_score1=0&attempts1=2&remediation1=");
}

TEST_F(Gradebook, AnswersInManyWays) {
    const std::string page = "<html><body><h1>Out of memory<br></body></html>";
    const struct {
        std::string host;
        bool accepted;
        bool replied;
        std::string reply;
    } cases[] = {
        {misbehaving("reply/success"), true, true, ""},
        {misbehaving("reply/success%20and%20more"), true, true, ""},
        {misbehaving("status/500/successfully%20failed"), true, true, ""},
        {misbehaving("reply/Success"), false, true, "Success"},
        {misbehaving("reply/%20success"), false, true, " success"},
        {misbehaving("empty"), false, true, ""},
        {misbehaving("error-page"), false, true, page},
        {refusingServer(), false, false, ""},
        {misbehaving("hang-up"), false, false, ""},
        {"no address", false, false, ""},
        {"", false, false, ""},
    };
    for (const auto& c : cases) {
        for (const bool suppressed : {true, false}) {
            SCOPED_TRACE(c.host + (suppressed ? " suppressed" : ""));
            exam->SubmitHost = c.host;
            exam->SubmitBackupHost = misbehaving("reply/success");
            exam->ServerErrorStr = "before";
            receivedRequests();
            const RecordedMessages messages;
            EXPECT_EQ(exam->Save("", suppressed), c.accepted);
            EXPECT_LE(receivedRequests().size(), 1u) << "one attempt, and never at the other host";
            const bool refused = c.replied && !c.accepted;
            EXPECT_EQ(exam->ServerErrorStr, refused && suppressed ? c.reply : "before");
            if (refused && !suppressed) {
                EXPECT_THAT(messages.all(),
                            ElementsAre("|Save to Gradium Server failed - SubmitHost = '" + c.host +
                                        "'\rGradium Server Response - '" + c.reply + "'"));
            } else {
                EXPECT_THAT(messages.all(), IsEmpty());
            }
        }
    }
    const platform::ScopedHttpLimits limits({.idle = std::chrono::milliseconds(200)});
    exam->SubmitHost = misbehaving("silence");
    EXPECT_FALSE(exam->Save("", false)) << "a silent gradebook ends the call";
}

TEST_F(Gradebook, TakesARecordThatWasKept) {
    // The client notices the outage, keeps the record in a file, and submits what that brings back.
    exam->SubmitHost = refusingServer();
    EXPECT_FALSE(exam->Save("", true));
    exam->SubmitHost = misbehaving("reply/success");
    ASSERT_TRUE(exam->Save(folder.file("record.xml"), true));
    EXPECT_EQ(folder.read("record.xml").find("<SUBMIT_HOST>"), std::string::npos);
    const auto later = New<GradiumExam>();
    ASSERT_TRUE(later->Load(folder.file("record.xml"), nullptr,
                            folder.write("title.ini", "\xEF\xBB\xBFTopicsPrimer\r\nmore")));
    EXPECT_EQ(later->theExam()->ExamFileName, "record.xml");
    receivedRequests();
    ASSERT_TRUE(exam->Save("", true));
    ASSERT_TRUE(later->Save("", true));
    const auto requests = receivedRequests();
    ASSERT_EQ(requests.size(), 2u);
    std::string expected = bodyOf(requests[0]);
    expected.replace(expected.find("dracoqz1"), 8, "dracoqz2");
    EXPECT_EQ(bodyOf(requests[1]), expected) << "the same result under the key of the other title file";
}

TEST_F(Gradebook, LaunchesWithTheKeyOfTheTitle) {
    const struct {
        std::string title; // content of the title file
        std::string address;
        std::string request;
    } cases[] = {
        {"Other", "document/launch", "GET /document/launch?key=dracoqz1"},
        {"TopicsPrimer", "document/launch?student=1", "GET /document/launch?student=1&key=dracoqz2"},
        {"TopicsPrimer\nx", "document/launch?", "GET /document/launch?&key=dracoqz2"},
        {"TopicsPrimer ", "document/launch", "GET /document/launch?key=dracoqz1"},
        {"topicsprimer", "document/launch", "GET /document/launch?key=dracoqz1"},
        {"", "document/launch", "GET /document/launch?key=dracoqz1"},
    };
    const std::string root = misbehaving("x").substr(0, misbehaving("x").size() - 2);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title + "|" + c.address);
        const std::string title = folder.write("title.ini", c.title);
        EXPECT_TRUE(exam->Load(root + c.address, nullptr, title)) << "without COURSE nothing is read";
        EXPECT_EQ(exam->StudentID, "S1");
        EXPECT_THAT(receivedRequests(), ElementsAre(::testing::StartsWith(c.request + " ")));
    }
    EXPECT_FALSE(exam->Load(misbehaving("error-page"), nullptr, "none"));
    EXPECT_FALSE(exam->Load(misbehaving("reply/<html%2F>"), nullptr, "none"));
    EXPECT_FALSE(exam->Load(misbehaving("status/500/<exam%2F>"), nullptr, "none"));
    EXPECT_TRUE(exam->Load(misbehaving("status/500/<ORBEX_INPUTS%2F>"), nullptr, "none"));
    EXPECT_NE(errorNumber([&] { exam->Load(refusingServer() + "launch", nullptr, "none"); }), 0);
    EXPECT_FALSE(exam->Load(folder.file("missing.xml"), nullptr, folder.file("missing.ini")));
    EXPECT_EQ(exam->theExam()->ID, "E1");
}

TEST_F(Gradebook, PrefersTheNewerHostAndKeepsWhatIsAbsent) {
    const auto record = New<GradiumExam>();
    const xml::Document document = parsed(
        "<COURSE><SUBMIT_HOST_V3>new</SUBMIT_HOST_V3><SUBMIT_HOST>old</SUBMIT_HOST><STUDENT/></COURSE>");
    record->StudentID = "kept";
    EXPECT_TRUE(record->LoadFromXMLNode(document.root(), nullptr, ""));
    EXPECT_EQ(record->SubmitHost, "new");
    EXPECT_EQ(record->StudentID, "kept");
    EXPECT_EQ(exam->CurrentLocation, " Week 7 ");
    const std::string text =
        written("COURSE", [&](xml::Document&, xml::Node course) { exam->SaveToXMLNode(course); });
    const std::string whole = kRecord;
    EXPECT_TRUE(text.starts_with(whole.substr(whole.find("<COURSE ")) + "<EXAM_LIST><EXAM ID=\"E1\""))
        << text;
}

TEST_F(Gradebook, LeavesAnotherExamAsItWas) {
    const Ref<Exam> own = exam->theExam();
    const auto other = New<Exam>();
    other->ID = "OTHER";
    EXPECT_TRUE(exam->SaveOtherExam(folder.file("other.xml"), other, true));
    EXPECT_NE(folder.read("other.xml").find("<EXAM ID=\"OTHER\""), std::string::npos);
    EXPECT_EQ(exam->theExam(), own);
    EXPECT_EQ(errorNumber([&] { exam->SaveOtherExam(folder.file("nowhere/x.xml"), other, true); }), 76);
    EXPECT_EQ(exam->theExam(), own) << "it comes back also when saving raises";
    EXPECT_TRUE(exam->Delete(folder.file("other.xml")));
    EXPECT_FALSE(exam->Delete(folder.file("other.xml")));
    EXPECT_FALSE(exam->Delete(kavlorServer() + "other.xml"));
}

TEST_F(Gradebook, StoresARecordAtAWebAddress) {
    {
        const RecordedMessages messages;
        EXPECT_FALSE(exam->Save(misbehaving("reply/disk%20full") + "r.xml", false));
        EXPECT_THAT(messages.all(), ElementsAre("|disk full"));
    }
    EXPECT_TRUE(exam->Save(misbehaving("empty") + "r.xml", false));
    const auto requests = receivedRequests();
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(requestLine(requests[1]), "POST /empty/r.xml");
    EXPECT_TRUE(bodyOf(requests[1]).starts_with("<ORBEX_INPUTS><COURSE_LIST>"));
}

TEST_F(Gradebook, GetsALessonsResult) {
    const std::string launch = folder.write(
        "lesson.xml", std::string(kRecord) +
                          "<LESSON><lesson ID='L1' EXTERNAL_ID='A2'><title>Sheets</title><taskList>"
                          "<taskRef completed='3/14/2004'>t1</taskRef><taskRef>t2</taskRef>"
                          "</taskList></lesson></LESSON></COURSE></COURSE_LIST></ORBEX_INPUTS>");
    const auto lesson = New<GradiumLesson>();
    ASSERT_TRUE(lesson->Load(launch, nullptr, "none"));
    lesson->SubmitHost = misbehaving("reply/success");
    ASSERT_TRUE(lesson->Save("", false));
    EXPECT_EQ(bodyOf(receivedRequests().at(0)),
              "studentName=AnnLee&student_id=S1&lesson_id=L1&assignment_id=A2&moduleName=Sheets&key=dracoqz1"
              "&task_id0=t1&completed0=Y&task_id1=t2&completed1=N");
    ASSERT_TRUE(lesson->Save(folder.file("record.xml"), false));
    EXPECT_NE(folder.read("record.xml").find("</INSTRUCTOR><EXAM ID=\"L1\""), std::string::npos);
    const auto later = New<GradiumLesson>();
    ASSERT_TRUE(later->Load(folder.file("record.xml"), nullptr, "none"));
    EXPECT_EQ(later->StudentLastName, "Lee");
    EXPECT_EQ(later->theLesson()->LessonID, "") << "a record does not bring its lesson back";
}

} // namespace
} // namespace norvakavlor
