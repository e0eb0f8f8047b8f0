#include "support/fixtures.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <norvakavlor/crypto/encryption.h>
#include <sstream>
#include <tools/server/options.h>
#include <tools/server/request_target.h>
#include <tools/server/service.h>

/// The parts of kavlor-server that take options, without a connection between.
namespace norvakavlor::server {
namespace {

using namespace norvakavlor::testing;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string posted(Service& service, const std::string& target, const std::string& body = {}) {
    return service.answer({"POST", target, "text/plain", body}, "").text;
}

TEST(KavlorServerOptions, AreUnderstoodOrRefused) {
    std::string fault;
    const auto options = parseOptions({"docs", "--port", "8080", "--launch-key", "a", "--launch-key", "b",
                                       "--exam-info-fields", "6", "--gradebook-reply", "no"},
                                      fault);
    ASSERT_TRUE(options) << fault;
    EXPECT_EQ(options->folder, "docs");
    EXPECT_EQ(options->address, "127.0.0.1");
    EXPECT_EQ(options->port, 8080);
    EXPECT_THAT(options->launchKeys, ElementsAre("a", "b"));

    for (const auto& [line] : rows<1>("server.options")) {
        std::istringstream words(line);
        std::vector<std::string> arguments;
        for (std::string word; words >> word;)
            arguments.push_back(word == "\"\"" ? "" : word);
        EXPECT_FALSE(parseOptions(arguments, fault)) << line;
        EXPECT_FALSE(fault.empty()) << line;
    }
    EXPECT_FALSE(parseOptions({"--help"}, fault));
    EXPECT_TRUE(fault.empty());
    for (const char* option :
         {"--address", "--port", "--require-login", "--refuse-saves", "--launch-key", "--roster",
          "--exam-info-fields", "--gradebook-reply", "--gradebook-accept-from"})
        EXPECT_THAT(helpText(), HasSubstr(option));
}

TEST(KavlorServerOptions, ChangeWhatIsAnswered) {
    const TemporaryFolder folder;
    folder.write("x.xml", "<exam><source>3</source></exam>");
    folder.write("x_kvqm_A_02.xml", "<exam pctCorrect='12.5'><title>T</title><source>3</source></exam>");

    Service refusing({.folder = folder.path(), .refuseSaves = "Full", .examInfoFields = 6});
    EXPECT_EQ(posted(refusing, "/SaveKavlorObject.asp?ObjName=Exam&FileName=x.xml", "<new/>"), "Full");
    EXPECT_EQ(folder.read("x.xml"), "<exam><source>3</source></exam>");
    EXPECT_EQ(posted(refusing, "/GetTitleFileNames.asp?ObjName=ExamInfo&ExamType=-1&"),
              "T;x_kvqm_A_02.xml;2;12.5;;3;");

    Service guarded({.folder = folder.path(), .requireLogin = true, .launchKeys = {"k1", "k2"}});
    const std::string load = "/LoadKavlorObject.asp?ObjName=Exam&FileName=x.xml";
    const std::string key = posted(guarded, "/LoginKey.asp");
    const std::string pair = "LoginKey=" + key + "&LoginValue=" + EncryptPassword(key);
    EXPECT_THAT(posted(guarded, load), HasSubstr("not logged in"));
    EXPECT_THAT(posted(guarded, load + "&" + pair), HasSubstr("not logged in"));
    for (const std::string& wrong :
         {pair + "0", std::string("LoginKey=abc&LoginValue=900150983cd24fb0d6963f7d28e17f72"), std::string()})
        EXPECT_EQ(posted(guarded, "/Login.asp?" + wrong), "Not validated") << wrong;
    EXPECT_EQ(posted(guarded, "/Login.asp?" + pair), "Validated");
    EXPECT_THAT(posted(guarded, load + "&" + pair), HasSubstr("<exam>"));
    EXPECT_THAT(posted(guarded, load + "&LoginKey=" + key), HasSubstr("not logged in"));
    folder.write("launch.xml", "<ORBEX_INPUTS/>");
    for (const auto& [target, status] : {std::pair{"/launch.xml?key=k2", 200},
                                         {"/launch.xml?key=k3", 403},
                                         {"/launch.xml", 403},
                                         {"/x.xml?key=k2", 404}})
        EXPECT_EQ(guarded.answer({"GET", target, "", ""}, "").status, status) << target;
}

TEST(KavlorServerOptions, TheGradebookAcceptsWhenItIsToldTo) {
    const struct {
        std::vector<std::string> arguments;
        std::vector<std::string> replies;
    } cases[] = {{{}, {"success", "success"}},
                 {{"--gradebook-reply", "Success"}, {"Success", "Success", "Success"}},
                 {{"--gradebook-accept-from", "3"}, {"busy", "busy", "success", "success"}},
                 {{"--gradebook-accept-from", "2", "--gradebook-reply", "no"}, {"no", "success"}}};
    const TemporaryFolder folder;
    for (const auto& c : cases) {
        std::vector<std::string> arguments = {folder.path()};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        std::string fault;
        Service service(*parseOptions(arguments, fault));
        std::vector<std::string> replies;
        while (replies.size() < c.replies.size())
            replies.push_back(posted(service, "/gradebook", std::to_string(replies.size())));
        EXPECT_EQ(replies, c.replies);
    }
    // A new run goes on counting where the last one stopped.
    EXPECT_EQ(folder.read("gradebook/0011.txt"), "1");
    EXPECT_EQ(folder.read("gradebook/0001.txt"), "0");
}

TEST(KavlorServerFolder, NoLinkLeadsOutOfIt) {
    const TemporaryFolder outside;
    const TemporaryFolder folder;
    const std::string text = "<exam><title>outside</title></exam>";
    outside.write("x.xml", text);
    folder.write("own.xml", "<exam/>");
    std::filesystem::create_symlink(outside.file("x.xml"), folder.file("link.xml"));
    std::filesystem::create_symlink("own.xml", folder.file("inner.xml"));
    std::filesystem::create_symlink(outside.file("new.xml"), folder.file("dangling.xml"));
    std::filesystem::create_directory_symlink(outside.path(), folder.file("away"));
    folder.write("students.xml", "<students><student><id>S</id><name/></student></students>");
    outside.write("a.xml", "<exam><questionRef>outside</questionRef></exam>");
    std::filesystem::create_symlink(outside.file("a.xml"), folder.file("own_S_01.xml"));
    folder.write("own_S_02.xml", "<exam><questionRef>inside</questionRef></exam>");
    std::filesystem::create_symlink("own_S_02.xml", folder.file("own_S_03.xml"));
    Service service({.folder = folder.path()});
    for (const char* target : {"/LoadKavlorObject.asp?ObjName=Exam&FileName=link.xml",
                               "/away/LoadKavlorObject.asp?ObjName=Exam&FileName=x.xml",
                               "/SaveKavlorObject.asp?ObjName=Exam&FileName=link.xml",
                               "/away/SaveKavlorObject.asp?ObjName=Exam&FileName=x.xml",
                               "/away/SaveKavlorObject.asp?ObjName=Exam&FileName=new.xml",
                               "/SaveKavlorObject.asp?ObjName=Exam&FileName=dangling.xml",
                               "/away/DeleteKavlorObject.asp?ObjName=Exam&FileName=x.xml",
                               "/away/GetTitleFileNames.asp?ObjName=Exam&ExamType=-1&",
                               "/LoadKavlorObject.asp?ObjName=ExamSummary&FileName=own.xml&AttemptNum=1"}) {
        const std::string reply = posted(service, target, "<new/>");
        EXPECT_FALSE(reply.empty()) << target;
        EXPECT_EQ(reply.find("outside"), std::string::npos) << target << ": " << reply;
    }
    EXPECT_EQ(service.answer({"GET", "/away/x.xml", "", ""}, "").status, 404);
    EXPECT_EQ(posted(service, "/LoadKavlorObject.asp?ObjName=Exam&FileName=inner.xml"), "<exam/>");
    EXPECT_THAT(posted(service, "/LoadKavlorObject.asp?ObjName=ExamSummary&FileName=own.xml&AttemptNum=3"),
                HasSubstr("inside"));
    EXPECT_EQ(posted(service, "/GetTitleFileNames.asp?ObjName=Exam&ExamType=-1&").find("link"),
              std::string::npos);
    EXPECT_EQ(outside.read("x.xml"), text);
    EXPECT_THAT(outside.names(), ElementsAre("a.xml", "x.xml"));
}

TEST(KavlorServerLog, MasksKeysAndStaysOneLine) {
    for (const auto& [target, shown] : rows<2>("server.masked"))
        EXPECT_EQ(maskedTarget(target), shown);
    EXPECT_EQ(maskedForm("&student_id=1&key=k&x=a?key=b"), "&student_id=1&key=***&x=a?key=b");
}

TEST(KavlorServerTarget, IsDecodedOnceAndAPlusStays) {
    const RequestTarget target =
        parseTarget("/a%20b/L.asp?ObjName=X&FileName=a+b%2520%zz%4=c&&Empty&FileName=second");
    EXPECT_EQ(target.directory, "/a b/");
    EXPECT_EQ(target.name, "L.asp");
    EXPECT_EQ(target.value("FileName"), "a+b%20%zz%4=c");
    EXPECT_EQ(target.value("Empty"), "");
    EXPECT_EQ(target.value("filename"), "");
    EXPECT_EQ(parseTarget("").directory, "");
    EXPECT_EQ(percentDecoded("%"), "%");
    EXPECT_EQ(percentDecoded("%4"), "%4");
    EXPECT_EQ(percentDecoded("%41"), "A");
}

} // namespace
} // namespace norvakavlor::server
