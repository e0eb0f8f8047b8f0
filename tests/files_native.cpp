#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/fixtures.h"

/// What only the system itself shows: modes, links, pipes, full disks, writers that die.
namespace norvakavlor::platform {
namespace {

using namespace norvakavlor::testing;

mode_t modeOf(const std::string& path) {
    struct stat state {};
    return ::stat(path.c_str(), &state) == 0 ? state.st_mode & 07777 : 0;
}

/// Runs a step in a process of its own and gives its exit code.
template <class Step> int inChild(Step step) {
    const pid_t child = ::fork();
    if (child == 0) {
        const int code = step();
        ::_exit(code);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

TEST(FilesNative, ASaveKeepsTheMode) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "old");
    for (const mode_t mode : {mode_t{0600}, mode_t{0664}, mode_t{0755}}) {
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        replaceFile(path, "new");
        EXPECT_EQ(modeOf(path), mode);
    }
    const mode_t former = ::umask(027);
    replaceFile(folder.file("new.xml"), "new");
    ::umask(former);
    EXPECT_EQ(modeOf(folder.file("new.xml")), mode_t{0640});
}

TEST(FilesNative, TheReadOnlyAttributeLeavesTheGroupsPermission) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "x");
    ASSERT_EQ(::chmod(path.c_str(), 0664), 0);
    setReadOnly(path, true);
    EXPECT_EQ(modeOf(path), mode_t{0464});
    setReadOnly(path, false);
    EXPECT_EQ(modeOf(path), mode_t{0664});
}

TEST(FilesNative, ASaveGoesThroughALink) {
    const TemporaryFolder folder;
    folder.write("there/a.xml", "old");
    ASSERT_EQ(::symlink("there/a.xml", folder.file("link.xml").c_str()), 0);
    ASSERT_EQ(::symlink("nowhere/a.xml", folder.file("dangling.xml").c_str()), 0);
    replaceFile(folder.file("link.xml"), "new");
    EXPECT_EQ(folder.read("there/a.xml"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link.xml")));
    EXPECT_EQ(errorNumber([&] { replaceFile(folder.file("dangling.xml"), "new"); }), 76);
}

TEST(FilesNative, ALockGoesThroughALinkAndNowhereElse) {
    const TemporaryFolder folder;
    folder.write("there/a.xml", "old");
    ASSERT_EQ(::symlink("there/a.xml", folder.file("link.xml").c_str()), 0);
    ASSERT_EQ(::symlink("nowhere/a.xml", folder.file("dangling.xml").c_str()), 0);
    DocumentLock link(folder.file("link.xml"));
    ASSERT_EQ(link.tryTake(), LockResult::Taken);
    EXPECT_EQ(DocumentLock(folder.file("there/a.xml")).tryTake(), LockResult::Held);
    link.replaceAndRelease("new");
    EXPECT_EQ(folder.read("there/a.xml"), "new");
    EXPECT_FALSE(isReadOnly(folder.file("there/a.xml")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link.xml")));
    EXPECT_EQ(errorNumber([&] { DocumentLock(folder.file("dangling.xml")); }), 76);
    EXPECT_EQ(errorNumber([&] { createDocument(folder.file("dangling.xml"), ""); }), 76);
    const mode_t mode = modeOf(folder.file("there"));
    EXPECT_EQ(errorNumber([&] { DocumentLock(folder.file("there")).tryTake(); }), 70);
    EXPECT_EQ(modeOf(folder.file("there")), mode);
    EXPECT_EQ(listFiles(folder.path()), std::vector<std::string>{"link.xml"});
}

TEST(FilesNative, APipeKeepsNobodyWaiting) {
    const TemporaryFolder folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(errorNumber([&] { readFile(pipe); }), 57);
    EXPECT_EQ(errorNumber([&] { replaceFile(pipe, "x"); }), 57);
    EXPECT_EQ(errorNumber([&] { DocumentLock(pipe).tryTake(); }), 70);
    EXPECT_EQ(firstLine(pipe), std::nullopt);
    EXPECT_EQ(listFiles(folder.path()), std::vector<std::string>());
}

TEST(FilesNative, AFullDiskLeavesTheOldContent) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "old");
    // A bound on the size of files fails a write as a full disk does, half way through.
    const int code = inChild([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{100000, 100000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const std::string large(200000, 'x');
        const int32_t error = errorNumber([&] { replaceFile(path, large); });
        DocumentLock lock(path);
        lock.tryTake();
        return errorNumber([&] { lock.replaceAndRelease(large); }) == error ? error : -1;
    });
    EXPECT_EQ(code, 61);
    EXPECT_FALSE(isReadOnly(path)) << "the lock is released all the same";
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.xml"});
}

TEST(FilesNative, WhoMayNotWriteIsRefused) {
    if (::getuid() != 0)
        GTEST_SKIP() << "only the superuser can become somebody else";
    const TemporaryFolder folder;
    const std::string path = folder.write("open/theirs.xml", "old");
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(folder.file("open").c_str(), 0777), 0);
    folder.write("closed/b.xml", "old");
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    const auto asNobody = [&](auto step) {
        return inChild([&] { return ::setgid(65534) == 0 && ::setuid(65534) == 0 ? errorNumber(step) : -1; });
    };
    EXPECT_EQ(asNobody([&] { replaceFile(path, "new"); }), 70);
    EXPECT_EQ(asNobody([&] { replaceFile(folder.file("closed/new.xml"), "new"); }), 70);
    EXPECT_EQ(asNobody([&] { deleteFile(folder.file("closed/b.xml")); }), 70);
    EXPECT_EQ(asNobody([&] { setReadOnly(path, true); }), 70);
    EXPECT_EQ(asNobody([&] { replaceFile(folder.file("open/mine.xml"), "new"); }), 0);
    EXPECT_EQ(folder.read("open/theirs.xml"), "old");
    // A folder that cannot be listed is not an empty one; saving into it does not take listing.
    ASSERT_EQ(::chmod(folder.file("open").c_str(), 0333), 0);
    EXPECT_EQ(asNobody([&] { listFiles(folder.file("open")); }), 70);
    EXPECT_EQ(asNobody([&] { replaceFile(folder.file("open/mine.xml"), "new"); }), 0);
    // The superuser's save leaves the file its owner's.
    ASSERT_EQ(::chown(path.c_str(), 65534, 65534), 0);
    replaceFile(path, "new");
    EXPECT_EQ(asNobody([&] { replaceFile(path, "theirs"); }), 0);
    // Whoever cannot keep the group gives nothing to another one.
    ASSERT_EQ(::chown(path.c_str(), 65534, 0), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0664), 0);
    EXPECT_EQ(asNobody([&] { replaceFile(path, "theirs"); }), 0);
    EXPECT_EQ(modeOf(path), mode_t{0644});
}

TEST(FilesNative, AKilledHolderOfALockKeepsNobodyOut) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "old");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    for (int round = 0; round < 2; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            DocumentLock lock(path);
            ::_exit(lock.tryTake() == LockResult::Taken ? 0 : 1);
        }
        int status = 1;
        ::waitpid(child, &status, 0);
        ASSERT_EQ(status, 0) << "the second takes over from the first";
        EXPECT_EQ(lockOwner(path)->process, static_cast<uint32_t>(child));
        EXPECT_EQ(modeOf(folder.file(lockFileName("a.xml"))), mode_t{0640});
    }
    DocumentLock(path).tryTake();
    EXPECT_EQ(lockOwner(path).has_value(), false) << "left on purpose";
    EXPECT_EQ(DocumentLock(path).tryTake(), LockResult::Held);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.xml"});
}

TEST(FilesNative, AKilledWriterLeavesTheOldContentOrTheNew) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", std::string(300000, 'a'));
    for (int round = 0; round < 30; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (char c = 'a';; c = c == 'a' ? 'b' : 'a')
                replaceFile(path, std::string(300000, c));
        }
        ::usleep(static_cast<useconds_t>(500 + 300 * round));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const std::string content = readFile(path);
        ASSERT_EQ(content.size(), 300000u);
        ASSERT_EQ(content.find_first_not_of(content.front()), std::string::npos);
        EXPECT_EQ(listFiles(folder.path()), std::vector<std::string>{"a.xml"});
    }
}

} // namespace
} // namespace norvakavlor::platform
