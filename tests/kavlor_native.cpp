#include "support/fixtures.h"
#include "support/servers.h"

#include <cstdio>
#include <norvakavlor/norvakavlor.h>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/platform/files_back_end.h>
#include <sys/wait.h>
#include <unistd.h>

#include <tools/kavlor/console.h>
#include <tools/kavlor/csv.h>
#include <tools/kavlor/html.h>
#include <tools/kavlor/report.h>

namespace norvakavlor {
namespace {

using namespace testing;

const std::string kSamples = std::string(KAVLOR_SOURCE_FOLDER) + "/examples";

struct Ended {
    int code;
    std::string output; ///< what both streams got
};

/// Runs kavlor in a shell, in a folder; `input` goes to its standard input.
Ended kavlorIn(const TemporaryFolder& folder, const std::string& arguments, const std::string& input = "") {
    folder.write("input", input);
    FILE* pipe = popen(
        ("cd '" + folder.path() + "' && " KAVLOR_PROGRAM " " + arguments + " < input 2>&1").c_str(), "r");
    std::string output;
    for (int byte = fgetc(pipe); byte != EOF; byte = fgetc(pipe))
        output += static_cast<char>(byte);
    return {WEXITSTATUS(pclose(pipe)), output};
}

void copySamples(const TemporaryFolder& folder) {
    std::filesystem::copy(kSamples, folder.path(), std::filesystem::copy_options::recursive);
}

TEST(Kavlor, CommandsSayWhatTheyDidAndHowItEnded) {
    const TemporaryFolder folder;
    copySamples(folder);
    folder.write("new.csv",
                 "\xEF\xBB\xBFLastName;FirstName;Course;Section;UserName\r\n\"Novák; jr\";Mila;1;0;mila\r\n"
                 ";;1;0;x\nKim;Ana;99;0;y\nKim;Bo;1;0;ana\nKim;Cy;1;0;mila\n\n");
    folder.write(
        "good.csv",
        "StudentID,LastName,FirstName,Password\nSID00001,Baptista,Ana,\nS-77,\"O\"\"Neil\",Eva,tulip\n");
    folder.write("change.csv", "StudentID,LastName,Section\nSID00001,Costa,1\n");
    folder.write("broken.xml", "<students><student>");
    folder.write("exams/sheets_kvqm_SID00004_01.xml", "<exam><title>cut");
    folder.write("exams/sheets_kvqm_SID00005_01.xml", "<exam pctCorrect='half'/>");
    folder.write("spare/old.xml", "<students/>");
    folder.write("spare/students.xml", "<students/>");
    const std::string secret = "ced10ff22e098c1022971423b466023a"; // a sample's digest
    const struct {
        const char* arguments;
        int code;
        std::vector<const char*> said;
        const char* input = "";
    } cases[] = {
        {"--version", 0, {"kavlor 1."}},
        {"--help", 0, {"roster", "report", "Exit codes"}},
        {"rostr x", 2, {"there is no command rostr"}},
        {"", 2, {"kavlor --help"}},
        {"list exams exams", 0, {"office_kvqm.xml", "Spreadsheets, first term"}},
        {"list all lessons --json", 0, {"\"kind\": \"menus\"", "\"title\": \"Office Skills I\""}},
        {"list pupils exams", 2, {"there is no kind pupils"}},
        {"list exams nowhere", 2, {"there is no folder nowhere"}},
        {"roster curriculum/students.xml --sort LASTNAME --filter Section=1 --csv",
         0,
         {"StudentID,LastName,FirstName,MiddleInit,Course,Section,UserName\nSID00009,Müller,", "Wójcik"}},
        {"roster curriculum/students.xml --sort Age", 2, {"students have no field Age"}},
        {"roster broken.xml", 2, {"broken.xml: line 1, column 20: no element found"}},
        {"roster curriculum/students.xml --import new.csv",
         1,
         {"new.csv:3: refused: there is no name",
          "new.csv:4: refused: ", "new.csv:5: refused: the user name ana is taken by SID00001",
          "new.csv:6: refused: the user name mila is taken by an earlier row",
          "would be: 1 added, 0 changed, 0 unchanged, 4 refused"}},
        {"roster curriculum/students.xml --import good.csv --dry-run",
         0,
         {"would be: 1 added, 0 changed, 1 unchanged, 0 refused"}},
        {"roster curriculum/students.xml --import good.csv", 0, {"1 added, 0 changed, 1 unchanged"}},
        {"roster curriculum/students.xml --import good.csv", 0, {"0 added, 0 changed, 2 unchanged"}},
        {"roster curriculum/students.xml --import change.csv",
         1,
         {"SID00001 is in the roster already, with other values"}},
        {"roster curriculum/students.xml --import change.csv --update", 0, {"0 added, 1 changed"}},
        {"roster curriculum/students.xml --import new.csv --skip-refused",
         1,
         {"1 added, 0 changed, 0 unchanged, 4 refused"}},
        {"roster curriculum/students.xml --csv",
         0,
         {"\"O\"\"Neil\",Eva", "SID00013,\"Novák; jr\",Mila", "SID00001,Costa,Ana,M,1,1,ana"}},
        {"summary exams/sheets_kvqm.xml",
         1,
         {"4 of 6 attempts read; 2 left out:",
          "exams/sheets_kvqm_SID00004_01.xml: line 1, column 17: no element found, <title> was opened at 1:7",
          "exams/sheets_kvqm_SID00005_01.xml: line 1, column 1: Type mismatch (error 13)", "SS-001"}},
        {"summary exams/sheets_kvqm.xml --attempt 2 --json", 0, {"\"attempts\": 1", "\"leftOut\": []"}},
        {"summary exams/none.xml", 2, {"there is no file exams/none.xml"}},
        {"unlock curriculum/students.xml", 0, {"is not locked"}},
        {"hash", 0, {"ced10ff22e098c1022971423b466023a\n"}, "bergamot\nignored"},
        {"hash bergamot", 2, {"kavlor --help"}},
        {"hash", 2, {"an empty password is none"}, "\n"},
        {"replay lessons/cells_kvl.xml", 2, {"is no record of"}},
        {"replay launches/exam_launch.xml",
         1,
         {"the gradebook did not accept \"Spreadsheets, first term\" of SID00001"}},
        {"check .",
         1,
         {"broken.xml:1:20: error: ",
          "spare/old.xml: note: the root is <students>, but such documents go by other names",
          "spare/students.xml: note: not read: curriculum/students.xml counts"}},
        {"report nowhere", 2, {"there is no folder nowhere"}},
        {"report launches", 2, {"holds no roster, exams or lessons"}},
        {"report . -o no/where.html", 2, {"no/where.html cannot be written"}},
        {"report . -o all.html", 0, {"all.html: 14 students in 3 classes, 8 attempts, 2 faults"}},
        {"completion", 0, {"complete -o filenames -F _kavlor kavlor", "--dry-run"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments);
        const Ended ended = kavlorIn(folder, c.arguments, c.input);
        EXPECT_EQ(ended.code, c.code) << ended.output;
        for (const char* said : c.said)
            EXPECT_NE(ended.output.find(said), std::string::npos) << said << "\n" << ended.output;
        EXPECT_TRUE(*c.arguments == 'h' || ended.output.find(secret) == std::string::npos);
    }
    EXPECT_EQ(folder.read("all.html").find(secret), std::string::npos);
    // What an import changes keeps the password, and what it adds has one.
    auto roster = New<Students>();
    ASSERT_TRUE(roster->Load(folder.file("curriculum/students.xml"), nullptr));
    EXPECT_TRUE(roster->StudentMembers->Item("SID00001")->hasPassword &&
                roster->Authenticate("ana", "sunflower"));
    EXPECT_TRUE(roster->StudentMembers->Item("S-77")->CheckPassword("tulip"));
}

TEST(Kavlor, UnlockAsksAndLeavesAFaultyRosterLocked) {
    const TemporaryFolder folder;
    copySamples(folder);
    folder.write("broken.xml", "<students>");
    const auto lock = [&](const char* file) {
        std::filesystem::permissions(folder.file(file), std::filesystem::perms::owner_read);
    };
    lock("curriculum/students.xml");
    lock("broken.xml");
    const Ended unasked = kavlorIn(folder, "unlock curriculum/students.xml", "y\n");
    EXPECT_EQ(unasked.code, 2) << unasked.output; // an answer from a pipe is none
    EXPECT_NE(unasked.output.find("no evidence by whom"), std::string::npos);
    EXPECT_NE(unasked.output.find("read-only since 20"), std::string::npos);
    EXPECT_EQ(kavlorIn(folder, "unlock curriculum/students.xml --yes").code, 0);
    EXPECT_NE(kavlorIn(folder, "unlock curriculum/students.xml").output.find("is not locked"),
              std::string::npos);
    const std::string roster = folder.file("curriculum/students.xml");
    const auto isTold = [&](const std::string& evidence, int code) {
        const Ended ended = kavlorIn(folder, "unlock curriculum/students.xml --yes");
        EXPECT_EQ(ended.code, code) << ended.output;
        EXPECT_NE(ended.output.find(evidence), std::string::npos) << ended.output;
    };
    const auto lockAndDie = [&] {
        const pid_t child = ::fork();
        if (child == 0) {
            platform::DocumentLock held(roster);
            ::_exit(held.tryTake() == platform::LockResult::Taken ? 0 : 1);
        }
        ::waitpid(child, nullptr, 0);
        return " by process " + std::to_string(child);
    };
    isTold(lockAndDie() + ", which has ended", 0);
    {
        platform::DocumentLock held(roster);
        ASSERT_EQ(held.tryTake(), platform::LockResult::Taken);
        isTold(" by process " + std::to_string(::getpid()) + ", which runs", 1);
        held.release();
    }
    const std::string process = lockAndDie();
    const std::string lockFile = "curriculum/" + platform::lockFileName("students.xml");
    std::string mark = folder.read(lockFile);
    folder.write(lockFile, mark.insert(mark.find("machine ") + 8, "else-"));
    isTold(process + "; written on another machine", 0);
    EXPECT_EQ(kavlorIn(folder, "unlock broken.xml --yes").code, 1);
    EXPECT_EQ(kavlorIn(folder, "unlock broken.xml --yes --broken").code, 0);
}

TEST(Kavlor, ReplaySubmitsEachKindOfRecord) {
    const TemporaryFolder folder;
    copySamples(folder);
    const auto setResultsDirectory = [](const std::string& directory) {
        const auto registry = New<Registry>();
        registry->fSaveString(registry->HKEY_LOCAL_MACHINE(), "Software\\Norvalis\\Kavlor\\Lumio",
                              "resultsDir", directory);
    };
    setResultsDirectory(folder.file("live"));
    for (const char* name :
         {"launches/exam_launch.xml", "launches/lesson_launch.xml", "live/GradiumLiveEx_X-LETTER.xml"}) {
        std::string text = folder.read(name);
        for (size_t at = 0; (at = text.find("{server}", at)) != std::string::npos;)
            text.replace(at, 8, kavlorServer().substr(0, kavlorServer().size() - 1));
        folder.write(name, text);
    }
    const std::string scores = folder.read("live/letter.xml");
    folder.write("live/letter.xml.scores", scores); // as left by a replay that was cut off
    const struct {
        const char* arguments;
        int code;
        const char* said;
    } cases[] = {
        {"launches/exam_launch.xml --title-file launches/title.ini", 0,
         "accepted \"Spreadsheets, first term\""},
        {"launches/lesson_launch.xml --lesson lessons/cells_kvl_SID00001.xml", 0,
         "accepted \"Cells and ranges\""},
        {"launches/lesson_launch.xml", 2, "is replayed with --lesson FILE"},
        {"launches/lesson_launch.xml --lesson exams/office_kvqm.xml", 2, "it is no lesson"},
        {"live/letter.xml", 0, "its scores are kept in live/letter.xml.scores"},
        {"live/letter.xml", 2, "is no record of"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments);
        const Ended ended = kavlorIn(folder, std::string("replay ") + c.arguments);
        EXPECT_EQ(ended.code, c.code) << ended.output;
        EXPECT_NE(ended.output.find(c.said), std::string::npos) << ended.output;
    }
    EXPECT_EQ(folder.read("live/letter.xml.scores"), scores);
    setResultsDirectory("");
}

TEST(Kavlor, ReportCountsAsTheClassesDo) {
    const TemporaryFolder folder;
    copySamples(folder);
    const std::string hostile = "</title><script>alert(\"1\")</script>'\u202E" + std::string(5000, 'x');
    auto students = New<Students>();
    ASSERT_TRUE(students->Load(folder.file("curriculum/students.xml"), nullptr));
    students->StudentMembers->Item("SID00004")->LastName = hostile;
    students->Save(folder.file("curriculum/students.xml"), nullptr);
    auto authored = New<Exam>();
    ASSERT_TRUE(authored->Load(folder.file("exams/sheets_kvqm.xml"), nullptr));
    authored->Title = hostile;
    authored->Save(folder.file("exams/sheets_kvqm.xml"), false);

    const kavlor::School school(folder.path());
    EXPECT_TRUE(school.faults.empty());
    ASSERT_EQ(school.exams.size(), 2U);
    for (const kavlor::ExamResults& results : school.exams) {
        SCOPED_TRACE(results.path);
        // One student at a time, with the latest attempt: SID00007 has two.
        auto total = New<Exam>();
        for (const Ref<Student>& student : *students->StudentMembers) {
            auto one = New<Students>();
            one->StudentMembers->Add(student, student->StudentID);
            const bool again = student->StudentID == "SID00007";
            total->AddAttempts(*one, nullptr, results.path, again ? 2 : 1);
        }
        for (const kavlor::QuestionResult& result : results.questions) {
            const Ref<Question>* counted = total->Questions->find(result.question->ID);
            EXPECT_EQ(result.asked, counted ? static_cast<size_t>((*counted)->Attempts) : 0U)
                << result.question->ID;
            EXPECT_EQ(result.right, counted ? static_cast<size_t>((*counted)->Correct) : 0U)
                << result.question->ID;
        }
        const auto rows = New<Exam>()->GetExamInfo(folder.file("exams/"), "SID00001", 2);
        EXPECT_EQ(results.outcomes.at("SID00001").percentage,
                  rows->Item(results.path.ends_with("office_kvqm.xml") ? 1 : 2)->PctCorrect);
    }
    EXPECT_EQ(school.exams[1].retaken, 1U);
    EXPECT_EQ(school.count(kavlor::Standing::NotBegun), 8U);
    ASSERT_EQ(school.classes.size(), 2U);
    EXPECT_EQ(school.classes[0].students[0].average, 75.0); // of 80 and 70
    EXPECT_EQ(school.classes[0].students[0].lessonsDone, 1U);

    const std::string page = kavlor::reportPage(school, "2026-11-26");
    EXPECT_EQ(page.find("<script"), std::string::npos);
    EXPECT_NE(page.find("&lt;script&gt;alert(&quot;1&quot;)&lt;/script&gt;&#39;"), std::string::npos);
    EXPECT_EQ(page.find(std::string(200, 'x')), std::string::npos); // shortened
    for (const char* outside : {"http:", "https:", "url(", "@import", "src="})
        EXPECT_EQ(page.find(outside), std::string::npos) << outside;
}

} // namespace
} // namespace norvakavlor
