#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/files_temporary.h>
#include <sddl.h>
#include <string>
#include <thread>
#include <vector>
#include <windows.h>

#include "support/fixtures.h"

/// What only this system has: handles that keep others out, device names, long paths.
namespace norvakavlor::platform {
namespace {

using namespace norvakavlor::testing;

/// Another program's open handle.
class OtherHandle {
public:
    OtherHandle(const std::string& path, DWORD sharing)
        : handle_(::CreateFileW(localPath(path).c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0,
                                nullptr)) {}
    OtherHandle(const OtherHandle&) = delete;
    OtherHandle& operator=(const OtherHandle&) = delete;
    ~OtherHandle() { ::CloseHandle(handle_); }

private:
    const HANDLE handle_;
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

/// Has the file open, keeping others out, from now on and for so many milliseconds.
std::thread holding(const std::string& path, DWORD sharing, int milliseconds) {
    return std::thread([milliseconds, holder = std::make_unique<OtherHandle>(path, sharing)] {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    });
}

TEST(FilesWindows, WhoLetsGoSoonIsWaitedFor) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "old");
    std::thread holder = holding(path, FILE_SHARE_READ, 150);
    EXPECT_EQ(errorNumber([&] { replaceFile(path, "new"); }), 0);
    holder.join();
    EXPECT_EQ(readFile(path), "new");
    holder = holding(path, 0, 150);
    EXPECT_EQ(errorNumber([&] { EXPECT_EQ(DocumentLock(path).tryTake(), LockResult::Taken); }), 0);
    holder.join();
}

TEST(DocumentLockWindows, IsHeldWhileASaveWaitsForOthers) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "old");
    DocumentLock lock(path);
    ASSERT_EQ(lock.tryTake(), LockResult::Taken);
    std::thread holder = holding(path, FILE_SHARE_READ, 500);
    // Whoever asks for the lock meanwhile gets it behind the save and not before.
    DocumentLock nextLock(path);
    std::thread next([&] {
        while (nextLock.tryTake() != LockResult::Taken)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        EXPECT_EQ(readFile(path), "new");
    });
    EXPECT_EQ(errorNumber([&] { lock.replaceAndRelease("new"); }), 0);
    holder.join();
    next.join();
    EXPECT_TRUE(isReadOnly(path));

    const OtherHandle lasting(path, FILE_SHARE_READ);
    EXPECT_EQ(errorNumber([&] { nextLock.replaceAndRelease("newer"); }), 70);
    EXPECT_FALSE(isReadOnly(path));
    EXPECT_EQ(readFile(path), "new");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.xml"});
}

/// The access rights of a file, as the system keeps them.
std::string rightsOf(const std::string& path) {
    std::string rights(1000, '\0');
    DWORD size = 0;
    EXPECT_TRUE(::GetFileSecurityW(localPath(path).c_str(), DACL_SECURITY_INFORMATION, rights.data(),
                                   static_cast<DWORD>(rights.size()), &size));
    rights.resize(size);
    return rights;
}

TEST(FilesWindows, WhatIsBeingSavedHasTheAccessRightsOfTheOldFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "old");
    const std::string foldersRights = rightsOf(path);
    PSECURITY_DESCRIPTOR everybody = nullptr;
    ASSERT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;WD)", SDDL_REVISION_1,
                                                                       &everybody, nullptr));
    ASSERT_TRUE(::SetFileSecurityW(localPath(path).c_str(), DACL_SECURITY_INFORMATION, everybody));
    ::LocalFree(everybody);
    const std::string rights = rightsOf(path);
    ASSERT_NE(rights, foldersRights);
    TemporaryFile temporary(localPath(path));
    temporary.write(onePiece("new"));
    for (const std::string& name : folder.names())
        EXPECT_EQ(rightsOf(folder.file(name)), rights) << name;
    EXPECT_EQ(folder.names().size(), 2u);
    temporary.replace(localPath(path));
    EXPECT_EQ(rightsOf(path), rights);
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
