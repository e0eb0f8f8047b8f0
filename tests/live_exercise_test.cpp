#include "support/fixtures.h"

#include <gmock/gmock.h>
#include <norvakavlor/config/registry.h>
#include <norvakavlor/modules/module_disc_manager.h>
#include <norvakavlor/results/live_ex_results.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

TEST(LiveExResults, KnowsItsFileAndItsScore) {
    const xml::Document document = parsed("<liveResults ID='X1'><score correct='TRUE'>07</score>"
                                          "<score correct='-1'>7.5</score><score>9</score></liveResults>");
    const auto results = New<LiveExResults>();
    EXPECT_TRUE(results->LoadFromXMLNode(document.root(), "folder\\letter.xml"));
    EXPECT_EQ(results->ExamFileName, "letter.xml");
    EXPECT_EQ(results->Scores->Item("7")->ExamID, "X1");
    EXPECT_DOUBLE_EQ(results->CalcScore(), 200.0 / 3);
    EXPECT_EQ(errorNumber([] { New<LiveExResults>()->CalcScore(); }), 6);
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
    EXPECT_EQ(errorNumber([&] { loaded->Delete(folder.file("first.xml")); }), 53);
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
