#include "support/servers.h"

#include <chrono>
#include <gmock/gmock.h>
#include <tools/kavlor/check.h>

namespace norvakavlor {
namespace {

using namespace testing;
using ::testing::AllOf, ::testing::HasSubstr, ::testing::MatchesRegex, ::testing::Not, ::testing::StartsWith;

/// What is wrong in a folder, a line each as "file:line:column id|text", and how many faults follow from it.
std::string faultsIn(const std::string& place, kavlor::Check::Named named = {}) {
    const kavlor::Check check(place, std::move(named));
    std::string lines;
    for (const kavlor::Finding& finding : check.findings) {
        if (finding.rank != kavlor::Finding::Rank::Note)
            lines += finding.document + ":" + std::to_string(finding.line) + ":" +
                     std::to_string(finding.column) + " " + finding.id + "|" + finding.text + "\n";
    }
    return lines + "following: " + std::to_string(check.following);
}

TEST(KavlorCheck, FindsEveryFaultWithPlaceAndRemedyAndNothingElse) {
    const std::string samples = std::string(KAVLOR_SOURCE_FOLDER) + "/examples";
    const auto copy = std::filesystem::copy_options::recursive;
    const struct {
        const char* file;
        std::string before; ///< "" for a new file
        std::string after;
        std::string found; ///< after the file's name
        std::string remedy;
        std::string following = "0";
    } rows[] = {
        {"lessons/letters_kvl.xml", "</taskRef>", "", ":10:5 |mismatched tag", "mend", "1"},
        {"curriculum/preferences.xml", "true", "\xE9", ":2:36 |its bytes", "mend"},
        {"textbooks.xml", "", "<classes/>", ":1:1 |the root is <classes>, not <textBookList>", "right one"},
        {"curriculum/courses.xml", ">WORDS-1", ">W-9", ":19:63 W-9|", "add it"},
        {"curriculum/objectives.xml", ">SHEETS-1", ">S-9", ":6:18 S-9|", "add it"},
        {"curriculum/taskpool.xml", "Ref>SS-CELL", "Ref>O-9", ":3:68 O-9|", "add it"},
        {"curriculum/students.xml", "<classRef>1", "<classRef>9", ":3:99 9|", "add it"},
        {"lessons/cells_kvl.xml", "T-SS-05", "T-9", ":8:5 T-9|", "add it"},
        {"exams/office_kvqm.xml", ">WP-001", ">Q-9", ":5:3 Q-9|", "add it"},
        {"curriculum/students.xml", "<name><first>Björn</first><last>Ekström</last></name>", "",
         ":4:3 SID00002|<student>", "has no name; add it"},
        {"curriculum/taskpool.xml", "</taskPool>", "<t><id>T-SS-02</id></t></taskPool>", ":54:1 T-SS-02|",
         ""},
        {"curriculum/questionpool.xml", " step=\"1\">", ">", ":6:26 SS-001|<image>", "no step; add it"},
        {"exams/sheets_kvqm.xml", "Pause>true", "Pause>maybe", ":4:502 maybe|", "correct it"},
        {"exams/sheets_kvqm.xml", "<loginRequired>true", "<loginRequired>nope", ":4:23 nope|", ""},
        {"exams/term_kvql.xml", "office", "lost", ":6:3 lost_kvqm.xml|", ""},
        {"lessons/office_lm.xml", "cells", "x", ":5:63 x_kvl.xml|", "there is no such file"},
        {"exams/old_kvqm_SID00001_01.xml", "", "<exam/>", ":0:0 old_kvqm.xml|", ""},
        {"exams/sheets_kvqm_S-9_01.xml", "", "<exam/>", ":0:0 S-9|the student", ""},
        {"exams/new_kvqm.xml", "", "<html/>", ":1:1 |the root is <html>", "HTML page"},
        {"lessons/cells_kvl.xml", "nRef>0", "nRef>8", ":10:3 8|it is assigned to section", "add it"},
        {"modules.xml", "Operating System", "Spreadsheets", ":5:3 Spreadsheets|", "is there already"},
        {"launches/lesson_launch.xml", "completed=\"12:00:00 AM\">T-SS-02", "completed=\"never\">T-SS-02",
         ":17:13 never|", "correct it"},
        {"launches/exam_launch.xml", ">SS-001", ">Q-8", ":16:11 Q-8|", "add it"},
        {"launches/cut.xml", "", "<ORBEX_INPUTS>", ":1:15 |no element found", "mend"},
        {"launches/page.xml", "", "<HTML/>", ":0:0 |the root is <HTML>", "HTML page"},
        {"live/GradiumLiveEx_X-LETTER.xml", "<score>0", "<score>x", ":5:124 x|", "correct it"},
        {"live/letter.xml", "attempts=\"3\"", "attempts=\"few\"", ":6:3 few|", "correct it"},
        {".a.xml.0123456789abcdef.nktmp", "", "x", ":0:0 |a save that was cut off", "delete it"},
        {"curriculum/textbooks.xml", "<id>OFFICE</id>", "", ":14:3 |<textBook> has no id", "add it"},
    };
    const TemporaryFolder all;
    const auto plantIn = [&](const TemporaryFolder& folder, const auto& row) {
        std::string text = row.before.empty() ? "" : folder.read(row.file);
        ASSERT_NE(text.find(row.before), std::string::npos);
        folder.write(row.file, text.replace(text.find(row.before), row.before.size(), row.after));
        using Clock = std::filesystem::file_time_type::clock;
        std::filesystem::last_write_time(folder.file(row.file), Clock::now() - std::chrono::hours(1));
    };
    std::filesystem::copy(samples, all.path(), copy);
    EXPECT_EQ(faultsIn(all.path()), "following: 0");
    std::vector<std::string> planted = {"curriculum/students.xml:0:0 |the roster is locked since"};
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.file) + " " + row.after);
        const TemporaryFolder alone;
        std::filesystem::copy(samples, alone.path(), copy);
        plantIn(alone, row);
        EXPECT_THAT(faultsIn(alone.path()), AllOf(StartsWith(row.file + row.found), HasSubstr(row.remedy),
                                                  MatchesRegex("[^\n]*\nfollowing: " + row.following)));
        plantIn(all, row);
        planted.push_back(row.file + row.found);
    }
    std::filesystem::permissions(all.file("curriculum/students.xml"), std::filesystem::perms::owner_read);
    const std::string found = faultsIn(all.path());
    for (const std::string& fault : planted)
        EXPECT_THAT(found, HasSubstr(fault));
    EXPECT_EQ(std::count(found.begin(), found.end(), '\n'), std::ssize(planted)) << found;
    all.write("curriculum/textbooks.xml", "<");
    EXPECT_THAT(faultsIn(all.path()), AllOf(HasSubstr("following: 51"), Not(HasSubstr("W-9|"))));
    const ServerFolder server;
    server.write("office_kvqm.xml", all.read("exams/office_kvqm.xml"));
    const std::string pool = samples + "/curriculum/questionpool.xml";
    EXPECT_THAT(faultsIn(server.url(), {{"questionpool.xml", pool}}), StartsWith("office_kvqm.xml:5:3 Q-9|"));
}

} // namespace
} // namespace norvakavlor
