#include <norvakavlor/platform/document_lock.h>

#include <norvakavlor/platform/document_lock_file.h>
#include <norvakavlor/platform/files_back_end.h>

namespace norvakavlor::platform {

DocumentLock::DocumentLock(const std::string& path)
    : path_(path), target_(pathBehindLinks(path)), lockFile_(std::make_unique<LockFile>(target_)) {}

DocumentLock::~DocumentLock() {
    // One that is not held may be proof of somebody else's death.
    if (isHeld_)
        lockFile_->remove();
}

LockResult DocumentLock::tryTake() {
    for (;;) {
        if (const auto result = tryTakeOnce())
            return *result;
    }
}

} // namespace norvakavlor::platform
