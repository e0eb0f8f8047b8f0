#include "console.h"

#include <atomic>
#include <cstdio>
#include <io.h>
#include <windows.h>

#include <shellapi.h>

namespace norvakavlor::kavlor {
namespace {

std::atomic<bool> interrupted = false;
DWORD consoleBefore = 0;

BOOL WINAPI onInterrupt(DWORD) {
    return interrupted.exchange(true) ? FALSE : TRUE; // the second one ends the program
}

std::string utf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string result(size > 0 ? static_cast<size_t>(size) : 1, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
    result.pop_back();
    return result;
}

} // namespace

void prepareConsole() {
    SetConsoleCtrlHandler(onInterrupt, TRUE);
    SetConsoleOutputCP(CP_UTF8);
    SetConsoleCP(CP_UTF8);
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        DWORD mode = 0;
        const HANDLE console = GetStdHandle(stream);
        if (GetConsoleMode(console, &mode))
            SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
}

std::vector<std::string> commandLine(int, char**) {
    std::vector<std::string> arguments;
    int count = 0;
    if (wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count)) {
        for (int word = 1; word < count; ++word)
            arguments.push_back(utf8(words[word]));
        LocalFree(words);
    }
    return arguments;
}

bool isTerminal(Stream stream) { return _isatty(static_cast<int>(stream)) != 0; }

void checkInterrupted() {
    if (interrupted)
        throw Interrupted();
}

EchoOff::EchoOff() {
    const HANDLE console = GetStdHandle(STD_INPUT_HANDLE);
    changed_ = GetConsoleMode(console, &consoleBefore) != 0;
    if (changed_)
        SetConsoleMode(console, consoleBefore & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
}

EchoOff::~EchoOff() {
    if (changed_)
        SetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), consoleBefore);
}

// The system keeps no time for attributes.
std::optional<std::string> attributesChanged(const std::string&) { return std::nullopt; }

std::optional<std::string> contentChanged(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    FILETIME local;
    SYSTEMTIME time;
    if (!GetFileAttributesExW(pathFrom(path).c_str(), GetFileExInfoStandard, &data) ||
        !FileTimeToLocalFileTime(&data.ftLastWriteTime, &local) || !FileTimeToSystemTime(&local, &time))
        return std::nullopt;
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d", time.wYear % 10000, time.wMonth % 100,
                  time.wDay % 100, time.wHour % 100, time.wMinute % 100);
    return text;
}

} // namespace norvakavlor::kavlor
