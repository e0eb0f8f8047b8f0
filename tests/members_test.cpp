#include <gtest/gtest.h>
#include <norvakavlor/curriculum/task_pool.h>
#include <norvakavlor/students/students.h>
#include <string>

#include "support/fixtures.h"

namespace norvakavlor {
namespace {

using testing::TemporaryFolder;

// A document is read and written one member at a time, and behaves as if it were one tree.
TEST(Members, CountOnlyWhenTheDocumentParsesToItsEnd) {
    const TemporaryFolder folder;
    const struct {
        const char* what;
        const char* inside;
        const char* loaded;
        int32_t tasks;
    } cases[] = {
        {"element and comment", "<task><id>a</id></task><!--c-->", "True", 2},
        {"pieces of one text", "a&amp;b&#65;", "True", 1},
        {"nothing", "", "True", 0},
        {"refused member behind another one", "<t><id>a</id></t><t><objectiveRef/></t><t/>", "error", 1},
        {"repeated before refused", "<t/><t/><t><objectiveRef/></t>", "repeated", 1},
        {"ill-formed behind a refused member", "<t/><t><objectiveRef/></t><u>", "False", 0},
        {"undeclared prefix behind a member", "<t/><p:t/>", "False", 0},
    };
    for (const auto& c : cases) {
        const auto pool = New<TaskPool>();
        const std::string path = folder.write("p.xml", "<taskPool>" + std::string(c.inside) + "</taskPool>");
        std::string loaded;
        try {
            loaded = pool->Load(path, nullptr) ? "True" : "False";
        } catch (const Error& error) {
            loaded = error.description().find("Duplicate") == std::string::npos ? "error" : "repeated";
        }
        EXPECT_EQ(loaded, c.loaded) << c.what;
        EXPECT_EQ(pool->Tasks->Count(), c.tasks) << c.what;
        const std::string text = pool->Tasks->empty() ? "<taskPool/>" : "<taskPool><task>";
        pool->Save(folder.file("saved.xml"));
        EXPECT_TRUE(folder.read("saved.xml").starts_with(text)) << c.what;
    }
}

} // namespace
} // namespace norvakavlor
