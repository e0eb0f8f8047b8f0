#include "support/fixtures.h"
#include "support/servers.h"

#include <gmock/gmock.h>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/assessment/exam_list.h>
#include <norvakavlor/text/convert.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::ElementsAre;

TEST(ExamFiles, BelongToTheirTypes) {
    const struct {
        const char* name;
        bool all;
        bool authored;
        bool attempt;
    } cases[] = {
        {"a_kvqm.xml", true, true, false},         {"_kvqm.xml", true, true, false},
        {"a_kvqm_S1_01.xml", true, false, true},   {"a_KVQM_S1_01.xml", true, false, true},
        {"a_KVQM.xml", true, false, false},        {"a_kvqm.XML", false, false, false},
        {"a_kvqm_S1_01.XML", false, false, false}, {"a_kvqm_b_kvqm.xml", true, true, false},
        {"a_kvqm.xml.bak", false, false, false},   {"a_kvql.xml", false, false, false},
        {"notes.xml", false, false, false},        {"", false, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(isExamFile(c.name, -1), c.all);
        EXPECT_EQ(isExamFile(c.name, 1), c.authored);
        EXPECT_EQ(isExamFile(c.name, 2), c.attempt);
        EXPECT_FALSE(isExamFile(c.name, 0));
        EXPECT_FALSE(isExamFile(c.name, 3));
    }
}

TEST(ExamFiles, NumberTheirAttempts) {
    EXPECT_EQ(attemptFileName("a_kvqm", "S1", 9), "a_kvqm_S1_09.xml");
    EXPECT_EQ(attemptFileName("a_kvqm", "S1", 10), "a_kvqm_S1_10.xml");
    EXPECT_EQ(attemptFileName("a_kvqm", "S1", 123), "a_kvqm_S1_123.xml");
    const struct {
        const char* name;
        int number;
    } cases[] = {
        {"a_kvqm_S1_07.xml", 7},    {"a_kvqm_S1_32767.xml", 32767},
        {"a_kvqm_S1_32768.xml", 0}, {"a_kvqm_S1_x.xml", 0},
        {"a_kvqm_S1_.xml", 0},      {"a_kvqm_S1_-3.xml", 0},
        {"a_kvqm.xml", 0},          {"other_12.xml", 0},
        {"a_kvqm_12.xml", 12},      {"a_kvqm_S1_12345678901234567890.xml", 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(attemptNumber(c.name), c.number) << c.name;
}

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

TEST(ExamsOnTheWeb, RowsAreFieldsOneBehindTheOther) {
    const auto exam = New<Exam>();
    const auto texts = [](const Ref<KeyedCollection<ExamInfo>>& rows) {
        std::vector<std::string> result;
        for (const Ref<ExamInfo>& row : *rows) {
            result.push_back(row->Title + "|" + row->Filename + "|" + std::to_string(row->Attempt) + "|" +
                             toText(row->PctCorrect) + "|" + row->FirstQuestionID + "|" +
                             std::to_string(row->Source));
        }
        return result;
    };
    // What is behind the last whole row is left out.
    EXPECT_THAT(
        texts(exam->GetExamInfo2(misbehaving("reply/One;a.xml;;;;2;Two;b.xml;3;12.5;q1;;cut;off;"), "", 2)),
        ElementsAre("One|a.xml|0|0||2", "Two|b.xml|3|12.5|q1|0"));
    EXPECT_THAT(texts(exam->GetExamInfo(misbehaving("reply/One;a.xml;;;;Two;b.xml;3;12.5;q1;cut"), "", 2)),
                ElementsAre("One|a.xml|0|0||0", "Two|b.xml|3|12.5|q1|0"));
    EXPECT_EQ(errorNumber([&] { exam->GetExamInfo(misbehaving("reply/One;a.xml;x;;;"), "", 2); }), 13);
}

TEST(ExamsOnTheWeb, RequestsNameWhatIsWanted) {
    const std::string base = misbehaving("reply/");
    const auto exam = New<Exam>();
    const auto summarise = [&](const std::string& examID) {
        exam->LoadExamSummary(base + "students.xml", nullptr, nullptr, examID, 2, "7", "");
    };
    const struct {
        std::function<void()> act;
        const char* target;
    } cases[] = {
        {[&] { exam->GetExamInfo(base, "", -1); }, "GetTitleFileNames.asp?ObjName=ExamInfo&ExamType=-1&"},
        {[&] { exam->GetExamInfo2(base, "S1", 2); },
         "GetTitleFileNames.asp?ObjName=ExamInfo&ExamType=2&StudentID=S1&"},
        {[&] { exam->GetStudentExams(base, "S1"); }, "GetTitleFileNames.asp?ObjName=Exam&ExamType=2&"},
        {[&] { summarise(base + "x_kvqm.xml"); },
         "LoadKavlorObject.asp?ObjName=ExamSummary&FileName=x_kvqm.xml&CourseID=7&SectionID=&AttemptNum=2"},
        // An exam's name alone is looked for beside the roster; the name of its file goes before it.
        {[&] { summarise("y_kvqm.xml"); },
         "LoadKavlorObject.asp?ObjName=ExamSummary&FileName=y_kvqm.xml&CourseID=7&SectionID=&AttemptNum=2"},
        {[&] {
             exam->ExamFileName = "z_kvqm.xml";
             summarise("y_kvqm.xml");
         },
         "LoadKavlorObject.asp?ObjName=ExamSummary&FileName=z_kvqm.xml&CourseID=7&SectionID=&AttemptNum=2"},
    };
    for (const auto& c : cases) {
        receivedRequests();
        c.act();
        EXPECT_THAT(receivedRequests(), ElementsAre(::testing::HasSubstr("/" + std::string(c.target) + " ")));
    }
}

} // namespace
} // namespace norvakavlor
