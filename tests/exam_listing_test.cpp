#include "support/fixtures.h"
#include "support/servers.h"

#include <gmock/gmock.h>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/assessment/exam_list.h>
#include <norvakavlor/runtime/convert.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::ElementsAre;

/// A folder with authored exams, attempts and strays.
class ExamListing : public ::testing::Test {
protected:
    void SetUp() override {
        folder.write(
            "b_kvqm.xml",
            "<exam><title>Beta</title><questionRef>q1</questionRef><questionRef>q2</questionRef></exam>");
        folder.write("A_kvqm.xml", "<exam><title>Alpha</title></exam>");
        folder.write(
            "b_kvqm_S1_01.xml",
            "<exam pctCorrect='66.6666666666667'><title>Beta</title><questionRef>q7</questionRef></exam>");
        folder.write("b_kvqm_S1_02.xml", "<exam pctCorrect='100'/>");
        folder.write("b_kvqm_S1_B_01.xml", "<exam pctCorrect='50'><title>Of S1_B</title></exam>");
        folder.write("b_kvqm_S2_01.xml", "<exam pctCorrect='much'><title>Stray</title></exam>");
        folder.write("c_kvqm.xml", "<exam><title>Torn");
        folder.write("sub_kvqm.xml/inside.txt", "a folder is no exam");
    }
    template <class Row> static std::vector<std::string> names(const Ref<KeyedCollection<Row>>& rows) {
        std::vector<std::string> result;
        for (const Ref<Row>& row : *rows)
            result.push_back(row->Filename);
        return result;
    }

    TemporaryFolder folder;
    Ref<Exam> exam = New<Exam>();
};

TEST_F(ExamListing, ListsATypeInTheOrderOfNames) {
    const auto rows = exam->GetExams(folder.path(), 1);
    EXPECT_THAT(names(rows), ElementsAre("A_kvqm.xml", "b_kvqm.xml"));
    EXPECT_EQ(rows->Item(2)->Title, "Beta");
    EXPECT_EQ(rows->Item(2)->Directory, folder.path());
    EXPECT_THAT(
        names(exam->GetExams(folder.path(), 2)),
        ElementsAre("b_kvqm_S1_01.xml", "b_kvqm_S1_02.xml", "b_kvqm_S1_B_01.xml", "b_kvqm_S2_01.xml"));
    EXPECT_EQ(exam->GetExams(folder.path(), -1)->Count(), 6);
    EXPECT_EQ(exam->GetExams(folder.path(), 5)->Count(), 0);
    EXPECT_EQ(exam->GetExams(folder.file("nowhere"), -1)->Count(), 0);
}

TEST_F(ExamListing, GivesRowsWithResults) {
    const auto rows = exam->GetExamInfo(folder.path(), "s1", 2);
    EXPECT_THAT(names(rows), ElementsAre("b_kvqm_S1_01.xml", "b_kvqm_S1_02.xml", "b_kvqm_S1_B_01.xml"));
    const ExamInfo& first = *rows->Item(1);
    EXPECT_EQ(first.Title, "Beta");
    EXPECT_EQ(first.Directory, folder.path());
    EXPECT_EQ(first.Attempt, 1);
    EXPECT_EQ(first.PctCorrect, 66.6666666666667);
    EXPECT_EQ(first.FirstQuestionID, "q7");
    EXPECT_EQ(rows->Item(2)->Attempt, 2);
    EXPECT_EQ(rows->Item(2)->Title, "");
    const auto authored = exam->GetExamInfo2(folder.path(), "", 1);
    EXPECT_THAT(names(authored), ElementsAre("A_kvqm.xml", "b_kvqm.xml"));
    EXPECT_EQ(authored->Item(2)->FirstQuestionID, "q1");
    EXPECT_EQ(authored->Item(2)->Attempt, 0);
}

TEST_F(ExamListing, FindsAStudentsFirstAttempts) {
    EXPECT_THAT(names(exam->GetStudentExams(folder.path(), "s1")), ElementsAre("b_kvqm_S1_01.xml"));
    EXPECT_EQ(exam->GetStudentExams(folder.path(), "")->Count(), 4);
    EXPECT_EQ(exam->GetStudentExams(folder.path(), "S9")->Count(), 0);
}

TEST_F(ExamListing, ListsAndKeepsExamLists) {
    folder.write("other/A_kvqm.xml", "<exam><title>Second Alpha</title></exam>");
    folder.write("other/d_kvqm.xml", "<exam><title>Delta</title></exam>");
    const std::string file = folder.write(
        "term_kvql.xml",
        "<examList><title>Term</title><pref><timeLimit>45</timeLimit></pref>"
        "<examFile>A_kvqm.xml</examFile><examFile>d_kvqm.xml</examFile><examFile>none_kvqm.xml</examFile>"
        "<examFile>other/d_kvqm.xml</examFile></examList>");
    const auto list = New<ExamList>();
    ASSERT_TRUE(list->Load(file, folder.path() + ";" + folder.file("other")));
    EXPECT_EQ(list->ExamListFileName, "term_kvql.xml");
    EXPECT_EQ(list->Prefs->TimeLimit, 45);
    ASSERT_EQ(list->Exams->Count(), 2);
    EXPECT_EQ(list->Exams->Item(1)->Title, "Alpha");
    EXPECT_EQ(list->Exams->Item(2)->Directory, folder.file("other/"));

    list->SetPassword("abc");
    EXPECT_TRUE(list->Save(folder.file("copy_kvql.xml")));
    const std::string saved = folder.read("copy_kvql.xml");
    EXPECT_TRUE(saved.starts_with("<examList><title>Term</title><pref inherited=\"1\">")) << saved;
    EXPECT_TRUE(
        saved.ends_with("</pref><examFile>A_kvqm.xml</examFile><examFile>d_kvqm.xml</examFile></examList>"))
        << saved;
    EXPECT_THAT(names(list->GetExamLists(folder.path())), ElementsAre("copy_kvql.xml", "term_kvql.xml"));
    EXPECT_FALSE(list->CheckPassword("abd"));
    EXPECT_TRUE(list->Delete(file));
    EXPECT_EQ(errorNumber([&] { list->Delete(file); }), 53) << "unlike an exam's";
    EXPECT_FALSE(list->Load(file, ""));
}

} // namespace
} // namespace norvakavlor
