#include <norvakavlor/platform/message_box_back_end.h>

#include <algorithm>
#include <norvakavlor/platform/windows/text_wide.h>
#include <windows.h>

namespace norvakavlor::platform {
namespace {

/// A server page runs in a window station without a screen; a box would wait forever there.
bool somebodySees() {
    USEROBJECTFLAGS flags{};
    return ::GetUserObjectInformationW(::GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags,
                                       nullptr) &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

void writeToEventLog(const std::wstring& text, const std::wstring& title) {
    constexpr size_t kLongestEntry = 31000; // the log refuses longer ones
    const std::wstring whole = title.empty() ? text : title + L": " + text;
    const std::wstring entry = whole.substr(0, kLongestEntry);
    const HANDLE log = ::RegisterEventSourceW(nullptr, L"NorvaKavlor");
    if (!log)
        return;
    const wchar_t* lines[] = {entry.c_str()};
    ::ReportEventW(log, EVENTLOG_INFORMATION_TYPE, 0, 0, nullptr, 1, 0, lines, nullptr);
    ::DeregisterEventSource(log);
}

/// False if no box could be shown. The thread's host window waits behind the box.
bool showBox(const std::wstring& text, const std::wstring& title) {
    const HWND owner = ::GetActiveWindow();
    const UINT manners = owner ? MB_OK : MB_OK | MB_TASKMODAL | MB_SETFOREGROUND;
    return ::MessageBoxW(owner, text.c_str(), title.c_str(), manners) > 0;
}

} // namespace

void showOnPlatform(const std::string& text, const std::string& title, const std::string&) {
    std::wstring wideText = toWide(text);
    // A box would end at a NUL.
    std::ranges::replace(wideText, L'\0', L'\uFFFD');
    const std::wstring wideTitle = toWide(title);
    if (!somebodySees() || !showBox(wideText, wideTitle))
        writeToEventLog(wideText, wideTitle);
}

} // namespace norvakavlor::platform
