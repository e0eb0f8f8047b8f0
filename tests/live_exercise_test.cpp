#include "support/fixtures.h"

#include <gmock/gmock.h>
#include <norvakavlor/config/registry.h>
#include <norvakavlor/modules/module_disc_manager.h>
#include <norvakavlor/results/live_ex_results.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

Ref<LiveExScore> score(const char* id, bool correct) {
    auto result = New<LiveExScore>();
    result->ID = id;
    result->Correct = correct;
    return result;
}

TEST(LiveExResults, ReadsAndWritesItsRecord) {
    const xml::Document document =
        parsed("<liveResults ID='X1' completionDate='3/14/2004'><title>Format a letter</title>"
               "<studentID>S1</studentID><score correct='TRUE' attempts='2'>07</score>"
               "<score correct='-1'>7.5</score><score correct='1'>9</score><score>10</score></liveResults>");
    const auto results = New<LiveExResults>();
    EXPECT_TRUE(results->LoadFromXMLNode(document.root(), "folder\\letter.xml"));
    EXPECT_EQ(results->ExamFileName, "letter.xml");
    EXPECT_EQ(results->Scores->Item("7")->ExamID, "X1");
    EXPECT_EQ(results->CalcScore(), 50);
    EXPECT_EQ(
        written("liveResults", [&](xml::Document&, xml::Node root) { results->SaveToXMLNode(root); }),
        R"(<liveResults ID="X1" completionDate="3/14/2004"><title>Format a letter</title><studentID>S1</studentID>)"
        R"(<score correct="True" attempts="2">7</score><score correct="True" attempts="0">8</score>)"
        R"(<score correct="False" attempts="0">9</score><score correct="False" attempts="0">10</score></liveResults>)");
}

TEST(LiveExResults, RaisesForStepsThatAreNoNumbers) {
    const struct {
        const char* second;
        int error;
    } cases[] = {{"<score>40000</score>", 6},
                 {"<score>step</score>", 13},
                 {"<score attempts='x'>2</score>", 13},
                 {"<score>01</score>", 457}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.second);
        const xml::Document document =
            parsed("<liveResults><score>1</score>" + std::string(c.second) + "</liveResults>");
        const auto results = New<LiveExResults>();
        EXPECT_EQ(errorNumber([&] { results->LoadFromXMLNode(document.root(), ""); }), c.error);
        EXPECT_EQ(results->Scores->Count(), 1);
    }
    EXPECT_EQ(errorNumber([] { New<LiveExResults>()->CalcScore(); }), 6);
}

TEST(LiveExResults, KeepsItsScoreWithAllDigits) {
    const auto results = New<LiveExResults>();
    results->Scores->Add(score("1", true), "1");
    results->Scores->Add(score("2", false), "2");
    results->Scores->Add(score("3", true), "3");
    EXPECT_DOUBLE_EQ(results->CalcScore(), 200.0 / 3);
}

TEST(LiveExResults, MovesItsRecord) {
    const TemporaryFolder folder;
    const auto results = New<LiveExResults>();
    EXPECT_TRUE(results->Save(folder.file("first.xml"), true));
    EXPECT_EQ(results->origFilename, folder.file("first.xml"));
    EXPECT_TRUE(results->Save(folder.file("second.xml"), false));
    EXPECT_TRUE(folder.has("first.xml"));
    EXPECT_TRUE(results->Save(folder.file("second.xml"), true));
    EXPECT_FALSE(folder.has("first.xml"));
    EXPECT_EQ(results->origFilename, folder.file("second.xml"));
    EXPECT_TRUE(results->Save(folder.file("third.xml"), true));
    EXPECT_THAT(folder.names(), ::testing::ElementsAre("third.xml"));
    const auto loaded = New<LiveExResults>();
    EXPECT_TRUE(loaded->Load(folder.file("third.xml")));
    EXPECT_EQ(loaded->origFilename, folder.file("third.xml"));
    EXPECT_FALSE(loaded->Load(folder.file("missing.xml")));
    EXPECT_TRUE(loaded->LoadFromXMLNode(parsed("<liveResults/>").root(), "x"));
    EXPECT_EQ(loaded->origFilename, folder.file("third.xml")) << "the client's own until a load raises";
    folder.write("bad.xml", "<liveResults><score>x</score></liveResults>");
    EXPECT_EQ(errorNumber([&] { loaded->Load(folder.file("bad.xml")); }), 13);
    EXPECT_EQ(loaded->origFilename, "");
    EXPECT_TRUE(loaded->Save(folder.file("fourth.xml"), true));
    EXPECT_THAT(folder.names(), ::testing::ElementsAre("bad.xml", "fourth.xml", "third.xml"));
    EXPECT_EQ(errorNumber([&] { loaded->Delete(folder.file("first.xml")); }), 53);
}

TEST(GradiumLiveEx, ReadsAndWritesItsLaunch) {
    const xml::Document document = parsed("<ORBEX_INPUTS><SUBMIT_HOST>old</SUBMIT_HOST>"
                                          "<SUBMIT_HOST_V3>new</SUBMIT_HOST_V3><liveExercise><id>X1</id>"
                                          "<courseId>C</courseId><assignmentId>A</assignmentId>"
                                          "<studentId>S</studentId><score>28</score></liveExercise>"
                                          "</ORBEX_INPUTS>");
    const auto launch = New<GradiumLiveEx>();
    EXPECT_TRUE(launch->LoadFromXMLNode(document.root(), ""));
    const xml::Document empty = parsed("<ORBEX_INPUTS><liveExercise><score/></liveExercise></ORBEX_INPUTS>");
    EXPECT_TRUE(launch->LoadFromXMLNode(empty.root(), "")) << "an empty score is an absent one";
    EXPECT_EQ(written("ORBEX_INPUTS", [&](xml::Document&, xml::Node root) { launch->SaveToXMLNode(root); }),
              "<ORBEX_INPUTS><SUBMIT_HOST_V3>new</SUBMIT_HOST_V3><SUBMIT_HOST_V3_BACKUP>"
              "</SUBMIT_HOST_V3_BACKUP><liveExercise><id>X1</id><courseId>C</courseId>"
              "<studentId>S</studentId><assignmentId>A</assignmentId><score>28</score></liveExercise>"
              "</ORBEX_INPUTS>");
}

TEST(ModuleDiscManager, CarriesNamesAndFilesOver) {
    const TemporaryFolder folder;
    const auto manager = New<ModuleDiscManager>();
    EXPECT_EQ(manager->GetFileForModule("Charts"), "Error");
    EXPECT_FALSE(manager->LoadConfigFile(folder.file("missing.xml")));
    EXPECT_FALSE(manager->LoadConfigFile(folder.write("torn.xml", "<discs><module name='a'")));
    ASSERT_TRUE(manager->LoadConfigFile(
        folder.write("discs.xml", "<discs><other name='z'/><module name='Charts' file='d1.dat'/>"
                                  "<module name='charts'/><!-- c --><module name='Files' file=''/>"
                                  "</discs>")));
    EXPECT_EQ(manager->GetFileForModule("charts"), "d1.dat");
    EXPECT_EQ(manager->GetFileForModule("Files"), "");
    EXPECT_EQ(manager->GetFileForModule("CHARTS"), "Error");
    EXPECT_EQ(errorNumber([&] {
                  manager->LoadConfigFile(
                      folder.write("more.xml", "<d><module name='New' file='n'/><module file='m'/></d>"));
              }),
              457);
    EXPECT_EQ(manager->GetFileForModule("New"), "n") << "what was added before the repeated name stays";
}

} // namespace
} // namespace norvakavlor
