#include <norvakavlor/platform/document_lock.h>

#include <norvakavlor/platform/document_lock_file.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/text/error.h>

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

LockOwner::State ownerState(LockFile& lockFile) {
    auto state = LockOwner::State::Unknown;
    ignoringErrors([&] {
        const auto opened = lockFile.open(false);
        if (opened == LockFile::Opened::Held)
            state = LockOwner::State::Runs;
        else if (opened == LockFile::Opened::Locked)
            state = LockOwner::State::Ended;
    });
    return state;
}

} // namespace norvakavlor::platform
