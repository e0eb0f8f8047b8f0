#include <norvakavlor/runtime/file_system_object.h>

#include <norvakavlor/platform/files.h>
#include <norvakavlor/runtime/describe.h>
#include <string>

namespace norvakavlor {
namespace {

class FileSystemObject final : public Object {
public:
    bool FileExists(const std::string& fileSpec) const { return platform::fileExists(fileSpec); }
    bool FolderExists(const std::string& folderSpec) const { return platform::folderExists(folderSpec); }
    void DeleteFile(const std::string& fileSpec, bool force) const { platform::deleteFile(fileSpec, force); }
    std::string GetBaseName(const std::string& path) const { return platform::baseName(path); }
    std::string GetExtensionName(const std::string& path) const { return platform::extensionName(path); }

    static const ClassInfo& classInfo() {
        static const ClassInfo info =
            describe<FileSystemObject>("FileSystemObject", "Questions about files and folders.")
                .method("FileExists", &FileSystemObject::FileExists, {"fileSpec"}, "Is there a file?")
                .method("FolderExists", &FileSystemObject::FolderExists, {"folderSpec"}, "Is there a folder?")
                .method("DeleteFile", &FileSystemObject::DeleteFile, {"fileSpec", {"force", optional}},
                        "Deletes a file; a read-only one only with force.")
                .method("GetBaseName", &FileSystemObject::GetBaseName, {"path"},
                        "The name without its extension.")
                .method("GetExtensionName", &FileSystemObject::GetExtensionName, {"path"},
                        "The name's extension.")
                .notCreatable();
        return info;
    }
};

} // namespace

Ref<Object> newFileSystemObject() { return New<FileSystemObject>(); }

} // namespace norvakavlor
