#include "support/fixtures.h"
#include "support/servers.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <norvakavlor/platform/http.h>

/// kavlor-server as the library's clients meet it.
namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

platform::HttpReply post(const std::string& url, const std::string& body = {}) {
    return platform::sendHttp(
        {.url = url, .headers = {{"Content-Type", "application/x-www-form-urlencoded"}}, .body = body});
}

TEST(KavlorServer, NoNameLeavesItsFolder) {
    const ServerFolder folder;
    folder.write("x.xml", "<x/>");
    for (const auto& [address] : rows<1>("server.refused")) {
        const bool isInFolder = address.starts_with("{folder}");
        const std::string url = (isInFolder ? folder.url() : kavlorServer()) + address.substr(8);
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
