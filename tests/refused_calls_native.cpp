#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <norvakavlor/lessons/lesson.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/registry.h>
#include <norvakavlor/platform/settings.h>
#include <norvakavlor/runtime/log.h>
#include <norvakavlor/students/students.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

#include "support/scene.h"

/// What the system refuses in passing, and grants the next time; what is opened and who may read what is
/// written. Three of its calls are this file's own: they are the system's but for one path, while a test says
/// so.
namespace {

struct Refusal {
    std::string_view call; ///< "stat"; "read" and "write" for opening a file for it
    std::string path;
    int code = 0;
};
Refusal refusal;

/// Every path that was opened, while somebody wants to know.
std::vector<std::string>* seen = nullptr;

/// The mode of every file that was written to, while somebody wants to know.
std::vector<mode_t>* modes = nullptr;

bool isRefused(std::string_view call, const char* path) {
    if (seen && call != "stat")
        seen->emplace_back(path);
    if (refusal.call != call || refusal.path != path)
        return false;
    errno = refusal.code;
    return true;
}

} // namespace

extern "C" int stat(const char* path, struct stat* state) noexcept {
    return isRefused("stat", path) ? -1 : ::fstatat(AT_FDCWD, path, state, 0);
}

extern "C" int open(const char* path, int manner, ...) {
    va_list arguments;
    va_start(arguments, manner);
    const mode_t mode = (manner & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (isRefused((manner & O_ACCMODE) == O_RDONLY ? "read" : "write", path))
        return -1;
    return ::openat(AT_FDCWD, path, manner, mode);
}

extern "C" ssize_t write(int file, const void* bytes, size_t size) {
    struct stat state {};
    if (modes && ::fstat(file, &state) == 0)
        modes->push_back(state.st_mode & 07777);
    return ::syscall(SYS_write, file, bytes, size);
}

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::Each;

/// No test may wait for ever for what is refused for ever.
constexpr unsigned kPatience = 20;

/// Refuses one call while it lives.
class RefusedCall {
public:
    RefusedCall(std::string_view call, std::string path, int code) {
        refusal = {call, std::move(path), code};
    }
    ~RefusedCall() { refusal = {}; }
    RefusedCall(const RefusedCall&) = delete;
    RefusedCall& operator=(const RefusedCall&) = delete;
};

TEST(Traced, NamesInDocumentsLeadNowhereElse) {
    Files files;
    size_t opened = 0;
    for (std::vector<std::string> row : tableRows("calls.names")) {
        row.resize(6);
        if (takesFile(row, files))
            continue;
        SCOPED_TRACE(row[0] + ": " + row[2]);
        Scene scene(row[0], files);
        std::vector<std::string> paths;
        seen = &paths;
        scene.run(row[2]);
        seen = nullptr;
        opened += paths.size();
        for (const std::string& path : paths) {
            const std::string whole = std::filesystem::weakly_canonical(path).string() + "/";
            EXPECT_TRUE(whole.starts_with(scene.located("file:in/"))) << path;
        }
    }
    EXPECT_GT(opened, 10u);
}

// While a file is written, whoever may not read it in the end may not read it either.
TEST(Traced, NothingIsWrittenWhereMoreMayRead) {
    const TemporaryFolder folder;
    const auto settings = std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "norvakavlor/settings";
    platform::writeSetting("a", "b", "mode", "x");
    const struct {
        std::string path;
        std::function<void()> step;
    } cases[] = {
        {folder.write("a_kvl.xml", ""), [&] { New<Lesson>()->Save(folder.file("a_kvl.xml"), false); }},
        {folder.write("r.xml", "<students/>"),
         [&] { New<Students>()->AddStudent(folder.file("r.xml"), New<Student>(), nullptr); }},
        {settings, [] { platform::writeSetting("a", "b", "mode", "y"); }},
        {folder.write("log", ""),
         [&] {
             setLogFile(folder.file("log"));
             New<Lesson>()->Load(folder.file("none.xml"));
             setLogFile("");
         }},
    };
    for (const mode_t mode : {mode_t{0600}, mode_t{0640}, mode_t{0660}}) {
        for (const auto& [path, step] : cases) {
            SCOPED_TRACE(path);
            ASSERT_EQ(::chmod(path.c_str(), mode), 0);
            std::vector<mode_t> seenModes;
            modes = &seenModes;
            step();
            modes = nullptr;
            seenModes.push_back(static_cast<mode_t>(std::filesystem::status(path).permissions()));
            EXPECT_GT(seenModes.size(), 1u);
            EXPECT_THAT(seenModes, Each(mode));
        }
    }
}

TEST(RefusedCalls, AStandInTakesNoPlaceThatCannotBeLookedAt) {
    const TemporaryFolder folder;
    const std::string copy = folder.write("a_kvl_S1.xml", "<lesson ID='finished'/>");
    const auto lesson = New<Lesson>();
    lesson->StandInFor(copy);
    for (const char* call : {"stat", "read"}) {
        const RefusedCall refused(call, copy, EIO);
        EXPECT_EQ(errorNumber([&] { lesson->Save(copy, false); }), 70) << call;
    }
    EXPECT_EQ(folder.read("a_kvl_S1.xml"), "<lesson ID='finished'/>");
}

TEST(RefusedCalls, AnInsertionThatCannotReadGivesTheLockBack) {
    const TemporaryFolder folder;
    const std::string text = "<students autoStudentID='4'/>";
    const std::string path = folder.write("r.xml", text);
    const auto added = New<Student>();
    const auto add = [&] { New<Students>()->AddStudent(path, added, nullptr); };
    const struct {
        const char* call;
        int code;
    } cases[] = {{"read", EIO}, {"read", EMFILE}, {"stat", EIO}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.call) + " " + std::to_string(c.code));
        ::alarm(kPatience);
        {
            const RefusedCall refused(c.call, path, c.code);
            EXPECT_EQ(errorNumber(add), 57);
        }
        ::alarm(0);
        EXPECT_FALSE(platform::isReadOnly(path));
    }
    EXPECT_EQ(folder.read("r.xml"), text);
    EXPECT_EQ(errorNumber(add), 0) << "nothing is in the way of the next one";
    EXPECT_EQ(added->StudentID, "SID00005");
}

TEST(RefusedCalls, SettingsThatCannotBeSeenAreKept) {
    const auto folder = std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "norvakavlor";
    platform::writeSetting("a", "b", "kept", "value");
    const struct {
        const char* call;
        const char* file;
        int code;
    } cases[] = {{"stat", "settings", EIO},
                 {"stat", "settings", ENOTDIR},
                 {"read", "settings", EMFILE},
                 {"write", "settings.lock", EIO},
                 {"write", "settings.lock", EACCES}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.call) + " " + c.file + " " + std::to_string(c.code));
        ::alarm(kPatience);
        {
            const RefusedCall refused(c.call, folder / c.file, c.code);
            EXPECT_EQ(errorNumber([] { platform::writeSetting("a", "b", "lost", "x"); }), 70);
            EXPECT_EQ(errorNumber([] { platform::deleteSetting("a", "b", "kept"); }), 70);
            platform::writeRegistry(0x80000001, "a", "lost", "x"); // fails without a word
            platform::deleteRegistry(0x80000001, "a", "lost");
        }
        ::alarm(0);
        EXPECT_EQ(platform::readSetting("a", "b", "kept"), "value");
        EXPECT_EQ(platform::readSetting("a", "b", "lost") + platform::readRegistry(0x80000001, "a", "lost"),
                  "");
    }
}

} // namespace
} // namespace norvakavlor
