// WinHTTP's functions, from the system's folder. Windows looks for this library first in the host program's
// folder, where anyone with write access could put another one. So it is loaded by its whole path, on first
// use, and these definitions replace the linker's imports. Each further function needs one here.

#include <norvakavlor/text/error.h>
#include <string>
#include <windows.h>

#include <winhttp.h>

namespace norvakavlor::platform {
namespace {

HMODULE loadLibrary() {
    // The first call gives the length with the terminating zero, the second without.
    std::wstring path(::GetSystemDirectoryW(nullptr, 0), L'\0');
    path.resize(::GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size())));
    // With the flag it finds its own libraries beside itself.
    return ::LoadLibraryExW((path + L"\\winhttp.dll").c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

/// The library's function with this name and its replacement's type.
template <class Function> Function* find(Function*, const char* name) {
    static const HMODULE library = loadLibrary();
    auto* const found = library ? reinterpret_cast<void*>(::GetProcAddress(library, name)) : nullptr;
    if (!found)
        throw runtimeError(RuntimeError::FileNotFound);
    return reinterpret_cast<Function*>(found);
}

} // namespace
} // namespace norvakavlor::platform

using norvakavlor::platform::find;

BOOL WINAPI WinHttpAddRequestHeaders(HINTERNET request, LPCWSTR headers, DWORD length, DWORD modifiers) {
    static const auto function = find(&WinHttpAddRequestHeaders, "WinHttpAddRequestHeaders");
    return function(request, headers, length, modifiers);
}

BOOL WINAPI WinHttpCloseHandle(HINTERNET handle) {
    static const auto function = find(&WinHttpCloseHandle, "WinHttpCloseHandle");
    return function(handle);
}

HINTERNET WINAPI WinHttpConnect(HINTERNET session, LPCWSTR server, INTERNET_PORT port, DWORD reserved) {
    static const auto function = find(&WinHttpConnect, "WinHttpConnect");
    return function(session, server, port, reserved);
}

HINTERNET WINAPI WinHttpOpen(LPCWSTR agent, DWORD access, LPCWSTR proxy, LPCWSTR bypass, DWORD flags) {
    static const auto function = find(&WinHttpOpen, "WinHttpOpen");
    return function(agent, access, proxy, bypass, flags);
}

HINTERNET WINAPI WinHttpOpenRequest(HINTERNET connection, LPCWSTR verb, LPCWSTR object, LPCWSTR version,
                                    LPCWSTR referrer, LPCWSTR* types, DWORD flags) {
    static const auto function = find(&WinHttpOpenRequest, "WinHttpOpenRequest");
    return function(connection, verb, object, version, referrer, types, flags);
}

BOOL WINAPI WinHttpQueryDataAvailable(HINTERNET request, LPDWORD available) {
    static const auto function = find(&WinHttpQueryDataAvailable, "WinHttpQueryDataAvailable");
    return function(request, available);
}

BOOL WINAPI WinHttpQueryHeaders(HINTERNET request, DWORD level, LPCWSTR name, LPVOID buffer, LPDWORD size,
                                LPDWORD index) {
    static const auto function = find(&WinHttpQueryHeaders, "WinHttpQueryHeaders");
    return function(request, level, name, buffer, size, index);
}

BOOL WINAPI WinHttpReadData(HINTERNET request, LPVOID buffer, DWORD size, LPDWORD count) {
    static const auto function = find(&WinHttpReadData, "WinHttpReadData");
    return function(request, buffer, size, count);
}

BOOL WINAPI WinHttpReceiveResponse(HINTERNET request, LPVOID reserved) {
    static const auto function = find(&WinHttpReceiveResponse, "WinHttpReceiveResponse");
    return function(request, reserved);
}

BOOL WINAPI WinHttpSendRequest(HINTERNET request, LPCWSTR headers, DWORD length, LPVOID body,
                               DWORD bodyLength, DWORD totalLength, DWORD_PTR context) {
    static const auto function = find(&WinHttpSendRequest, "WinHttpSendRequest");
    return function(request, headers, length, body, bodyLength, totalLength, context);
}

BOOL WINAPI WinHttpSetOption(HINTERNET handle, DWORD option, LPVOID value, DWORD size) {
    static const auto function = find(&WinHttpSetOption, "WinHttpSetOption");
    return function(handle, option, value, size);
}

BOOL WINAPI WinHttpSetTimeouts(HINTERNET handle, int resolve, int connect, int send, int receive) {
    static const auto function = find(&WinHttpSetTimeouts, "WinHttpSetTimeouts");
    return function(handle, resolve, connect, send, receive);
}

BOOL WINAPI WinHttpWriteData(HINTERNET request, LPCVOID data, DWORD size, LPDWORD count) {
    static const auto function = find(&WinHttpWriteData, "WinHttpWriteData");
    return function(request, data, size, count);
}
