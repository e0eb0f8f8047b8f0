#include <norvakavlor/platform/windows/files_handle.h>

namespace norvakavlor::platform {

FileHandle openShared(const std::filesystem::path& path, DWORD access, DWORD disposition) {
    constexpr DWORD kAnything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return FileHandle(
        ::CreateFileW(path.c_str(), access, kAnything, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool isHeldByOthers(DWORD error) {
    // A deleted file that somebody still has open is denied, too.
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED;
}

RuntimeError errorOfCode(DWORD code) {
    constexpr DWORD kDiskQuotaExceeded = 1295;
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
    case ERROR_INVALID_DRIVE:
    case ERROR_NOT_READY:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
        return RuntimeError::PathNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_NETWORK_ACCESS_DENIED:
        return RuntimeError::PermissionDenied;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
        return RuntimeError::OutOfMemory;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kDiskQuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
        return RuntimeError::DiskFull;
    default:
        return RuntimeError::DeviceError;
    }
}

DWORD lockFarByte(const FileHandle& file) {
    OVERLAPPED place{};
    place.OffsetHigh = 0x40000000;
    return ::LockFileEx(file.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place)
               ? DWORD{ERROR_SUCCESS}
               : ::GetLastError();
}

bool isSameFile(const BY_HANDLE_FILE_INFORMATION& one, const BY_HANDLE_FILE_INFORMATION& other) {
    return one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
}

} // namespace norvakavlor::platform
