#include <norvakavlor/platform/windows/files_handle.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <norvakavlor/runtime/log_back_end.h>
#include <windows.h>

namespace norvakavlor {

void appendToFile(const std::string& path, std::string_view text) {
    const platform::FileHandle file =
        platform::openShared(platform::toWide(path), FILE_APPEND_DATA, OPEN_ALWAYS);
    DWORD written = 0;
    if (file)
        ::WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

unsigned long processId() { return ::GetCurrentProcessId(); }

} // namespace norvakavlor
