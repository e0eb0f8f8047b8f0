#include <chrono>
#include <gtest/gtest.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <string>
#include <thread>
#include <vector>
#include <windows.h>

#include "support/fixtures.h"

/// What only this system has: handles that keep others out, device names, long paths.
namespace norvakavlor::platform {
namespace {

using norvakavlor::testing::errorNumber;
using norvakavlor::testing::TemporaryFolder;

/// Another program's open handle.
class OtherHandle {
public:
    OtherHandle(const std::string& path, DWORD sharing)
        : handle_(::CreateFileW(localPath(path).c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0,
                                nullptr)) {}
    OtherHandle(const OtherHandle&) = delete;
    OtherHandle& operator=(const OtherHandle&) = delete;
    ~OtherHandle() { close(); }
    void close() { ::CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE)); }

private:
    HANDLE handle_;
};

TEST(FilesWindows, WhoKeepsOthersOutFailsASaveAndLosesNothing) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "old");
    {
        const OtherHandle holder(path, 0);
        EXPECT_EQ(errorNumber([&] { replaceFile(path, "new"); }), 70);
        EXPECT_EQ(errorNumber([&] { readFile(path); }), 70);
        EXPECT_EQ(errorNumber([&] { deleteFile(path); }), 70);
    }
    EXPECT_EQ(readFile(path), "old");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.xml"});
}

TEST(FilesWindows, WhoLetsGoSoonIsWaitedFor) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "old");
    OtherHandle holder(path, FILE_SHARE_READ);
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        holder.close();
    });
    EXPECT_EQ(errorNumber([&] { replaceFile(path, "new"); }), 0);
    other.join();
    EXPECT_EQ(readFile(path), "new");
}

TEST(FilesWindows, DevicesAreNoFiles) {
    const TemporaryFolder folder;
    for (const std::string name : {"con", "NUL", "com1", "\\\\.\\pipe\\a"}) {
        EXPECT_FALSE(fileExists(name)) << name;
        EXPECT_FALSE(folderExists(name)) << name;
        EXPECT_EQ(errorNumber([&] { readFile(name); }), 53) << name;
        EXPECT_EQ(errorNumber([&] { replaceFile(name, "x"); }), 76) << name;
        EXPECT_EQ(errorNumber([&] { deleteFile(name); }), 53) << name;
    }
}

TEST(FilesWindows, LongPathsAreAsGoodAsShortOnes) {
    const TemporaryFolder folder;
    std::vector<std::string> folders{folder.path()};
    for (const char name : {'a', 'b', 'c', 'd', 'e'}) {
        folders.push_back(folders.back() + std::string(80, name) + "\\");
        ::CreateDirectoryW(localPath(folders.back()).c_str(), nullptr);
    }
    const std::string& inside = folders.back();
    const std::string path = inside + std::string(120, 'f') + ".xml";
    replaceFile(path, "one\ntwo");
    replaceFile(path, "three\nfour");
    EXPECT_EQ(readFile(path), "three\nfour");
    EXPECT_EQ(firstLine(path), "three");
    EXPECT_TRUE(fileExists(path) && folderExists(inside) && sameFile(path, path));
    EXPECT_EQ(listFiles(inside).size(), 1u);
    setReadOnly(path, true);
    EXPECT_TRUE(isReadOnly(path));
    deleteFile(path, true);
    EXPECT_FALSE(fileExists(path));
    // The folder's own clean-up knows short paths only.
    for (; folders.size() > 1; folders.pop_back())
        EXPECT_TRUE(::RemoveDirectoryW(localPath(folders.back()).c_str()));
}

} // namespace
} // namespace norvakavlor::platform
