#include "support/fixtures.h"
#include "support/servers.h"

#include <gmock/gmock.h>
#include <norvakavlor/config/check_setup.h>
#include <norvakavlor/config/registry.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/platform/settings.h>
#include <norvakavlor/results/live_ex_results.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/text/convert.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

/// An exercise with 2 of 3 steps right whose launch waits in the results directory, and a record folder.
class LiveSubmission : public ::testing::Test {
protected:
    void SetUp() override {
        setResultsDirectory(folder.path().substr(0, folder.path().size() - 1));
        results->ExamID = "X1";
        for (const char* id : {"1", "2", "3"}) {
            auto score = New<LiveExScore>();
            score->ID = id;
            score->Correct = id != std::string("2");
            results->Scores->Add(score, id);
        }
        receivedRequests();
    }
    void TearDown() override { setResultsDirectory(""); }

    static void setResultsDirectory(const std::string& directory) {
        const auto registry = New<Registry>();
        registry->fSaveString(registry->HKEY_LOCAL_MACHINE(), "Software\\Norvalis\\Kavlor\\Lumio",
                              "resultsDir", directory);
    }
    void launch(const std::string& host, const std::string& backup) {
        folder.write(
            "GradiumLiveEx_X1.xml",
            "<ORBEX_INPUTS><SUBMIT_HOST_V3>" + host + "</SUBMIT_HOST_V3><SUBMIT_HOST_V3_BACKUP>" + backup +
                "</SUBMIT_HOST_V3_BACKUP><liveExercise><id>X1</id><courseId>C</courseId>"
                "<assignmentId>A 1</assignmentId><studentId>S</studentId></liveExercise></ORBEX_INPUTS>");
    }

    TemporaryFolder folder;
    Ref<LiveExResults> results = New<LiveExResults>();
};

TEST_F(LiveSubmission, TriesFiveTimesAndSaysSo) {
    launch(misbehaving("reply/busy") + "host", refusingServer());
    const RecordedMessages messages;
    EXPECT_TRUE(results->Save(folder.file("record.xml"), false)) << "the record is stored all the same";
    const std::string again =
        "Kavlor Message|Sending results to Gradium failed.  I'll try again in 10 seconds.\r\n\r\n"
        "Please do not close the application during this time.";
    const std::string busy = "Norva.dll error msg|Gradium server response:\r\n\r\nbusy";
    const std::string error = "Norva.dll error msg|Gradium server returned error:\r\n\r\n";
    EXPECT_THAT(messages.all(),
                ::testing::ElementsAre(
                    busy, again, busy, again, error, again, busy, again, error, again,
                    "Kavlor Message|Sending results to Gradium failed.  Please alert your instructor"));
    EXPECT_EQ(receivedRequests().size(), 3u);
    EXPECT_TRUE(results->GetGradiumLiveEx()) << "the launch waits until the gradebook has accepted";
    const auto later = New<LiveExResults>();
    ASSERT_TRUE(later->Load(folder.file("record.xml")));
    EXPECT_EQ(later->Scores->Count(), 3) << "they can be submitted again";
}

TEST_F(LiveSubmission, StopsWhenTheGradebookAccepts) {
    // The address is used without the white space around it, and the launch goes also when it is read-only.
    launch(misbehaving("reply/busy"), "\r\n\t " + misbehaving("reply/success") + " \n");
    platform::setReadOnly(folder.file("GradiumLiveEx_X1.xml"), true);
    const ScopedClockSource clock({.now = [] { return toDate("3/4/2004 12:05:09 AM"); }});
    const RecordedMessages messages;
    EXPECT_TRUE(results->Save(folder.file("record.xml"), false));
    EXPECT_EQ(messages.all().size(), 4u);
    const auto requests = receivedRequests();
    ASSERT_EQ(requests.size(), 3u);
    EXPECT_EQ(folder.read("record.xml"), "<liveResults/>") << "its result is with the gradebook";
    EXPECT_EQ(requests[2].substr(requests[2].find("\r\n\r\n") + 4),
              "&student_id=S&exercise_id=X1&assignment_id=A 1&course_id=A 1&testDate=March 4, "
              "2004&testTime=12:05:09AM"
              "&result=66.6666666666667&key=dracoqz1");
    EXPECT_FALSE(folder.has("GradiumLiveEx_X1.xml"));
    EXPECT_TRUE(results->Save(folder.file("record.xml"), false)) << "without a launch the scores are stored";
    EXPECT_NE(folder.read("record.xml").find("<score correct=\"True\" attempts=\"0\">1</score>"),
              std::string::npos);
}

TEST_F(LiveSubmission, SendsTheDateOfTheTestWhereThereIsOne) {
    const auto exercise = New<GradiumLiveEx>();
    exercise->SubmitHost = misbehaving("reply/success");
    exercise->CompletionDate = "12/31/2003 11:59:59 PM";
    exercise->Score = 28;
    EXPECT_TRUE(exercise->Save(""));
    const std::string request = receivedRequests().at(0);
    EXPECT_NE(request.find("&testDate=December 31, 2003&testTime=11:59:59PM&result=28&key="),
              std::string::npos)
        << request;
}

TEST_F(LiveSubmission, RaisesWithoutScoresAndFindsNoLaunchElsewhere) {
    launch("x", "y");
    results->Scores->clear();
    EXPECT_EQ(errorNumber([&] { results->Save(folder.file("record.xml"), false); }), 6);
    EXPECT_FALSE(folder.has("record.xml"));
    // What cannot be looked up is no launch, and the record is stored whole.
    setResultsDirectory(refusingServer());
    EXPECT_FALSE(results->GetGradiumLiveEx());
    for (const char* odd : {"<launch/>", "<ORBEX_INPUTS>",
                            "<ORBEX_INPUTS><liveExercise><score>x</score>"
                            "</liveExercise></ORBEX_INPUTS>"}) {
        setResultsDirectory(folder.path());
        folder.write("GradiumLiveEx_X1.xml", odd);
        EXPECT_FALSE(results->GetGradiumLiveEx()) << odd;
        EXPECT_TRUE(results->Save(folder.file("record.xml"), false));
        EXPECT_TRUE(folder.has("GradiumLiveEx_X1.xml"));
    }
    results->ExamID = "../X1";
    EXPECT_FALSE(results->GetGradiumLiveEx());
    results->ExamID = "X2";
    EXPECT_FALSE(results->GetGradiumLiveEx());
    results->ExamID = "X1";
    setResultsDirectory("");
    EXPECT_FALSE(results->GetGradiumLiveEx());
}

TEST_F(LiveSubmission, ShowsWhatTheServerSaysToARecord) {
    const ServerFolder server;
    EXPECT_TRUE(results->Save(server.url("first.xml"), true));
    {
        const RecordedMessages messages;
        EXPECT_FALSE(results->Save(misbehaving("reply/full") + "second.xml", true));
        EXPECT_FALSE(results->Save(misbehaving("status/500/") + "second.xml", true));
        EXPECT_THAT(messages.all(),
                    ::testing::ElementsAre("|Gradium server repored an error: full",
                                           "|Gradium server repored an error: The server did not take the "
                                           "document (500)."));
        EXPECT_NE(server.read("first.xml"), "(no file)")
            << "the only record stays when the server refuses another";
    }
    EXPECT_TRUE(results->Save(server.url("second.xml"), true));
    EXPECT_EQ(server.read("first.xml"), "(no file)");
}

TEST(CheckSetup, ReportsWhatIsMissing) {
    const TemporaryFolder folder;
    const std::string application = "NorvaKavlor Test";
    const auto set = [&](const char* name, const std::string& value) {
        platform::writeSetting(application, "Paths", name, value);
    };
    const auto check = [&] { return New<CheckSetup>()->Check(application, "Paths"); };
    const platform::ScopedHttpLimits limits({.idle = std::chrono::milliseconds(200)});
    EXPECT_EQ(check(), "");
    set("XMLDir", folder.path());
    set("QuestionPoolDir", kavlorServer() + "?site=3");
    set("TestResultsDir", misbehaving("error-page"));
    EXPECT_EQ(check(), "") << "an answer is an answer";
    set("XMLDir", folder.file("missing\\"));
    for (const std::string& server : {refusingServer(), misbehaving("hang-up"), misbehaving("silence")}) {
        set("TestResultsDir", server);
        EXPECT_EQ(check(), "Directory specified for registry entry 'XMLDir' does not exist ('" +
                               folder.file("missing/") + "').\r" +
                               "URL specified for registry entry 'TestResultsDir' : ('" + server +
                               "') is not responding .\r");
    }
    receivedRequests();
    set("XMLDir", "");
    set("TestResultsDir", misbehaving("empty") + "dir?a=b");
    EXPECT_EQ(check(), "");
    EXPECT_EQ(requestLine(receivedRequests().at(0)), "POST /empty/dir?a=b/LoginKey.asp");
    for (const char* name : {"XMLDir", "QuestionPoolDir", "TestResultsDir"})
        platform::deleteSetting(application, "Paths", name);
}

} // namespace
} // namespace norvakavlor
