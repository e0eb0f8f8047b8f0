// How long the DLL takes for its first object and for the later ones: kavlor_bench_creation NorvaKavlor.dll
// Prints both in nanoseconds.

#include <chrono>
#include <cstdio>
#include <cstring>
#include <norvakavlor/component/identifiers.h>
#include <objbase.h>
#include <oleauto.h>

namespace {

using Clock = std::chrono::steady_clock;

long long nanosecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - start).count();
}

CLSID classOf(const char* name) {
    const std::string text = "{" + norvakavlor::identifiersOf(name).classId.toText() + "}";
    CLSID id{};
    CLSIDFromString(std::wstring(text.begin(), text.end()).c_str(), &id);
    return id;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2 || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
        return 2;
    const CLSID id = classOf("TextBook");
    const auto start = Clock::now();
    const HMODULE library = LoadLibraryA(arguments[1]);
    if (!library)
        return 1;
    using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
    const auto address = GetProcAddress(library, "DllGetClassObject");
    GetClassObject getClassObject = nullptr;
    std::memcpy(&getClassObject, &address, sizeof address);
    IClassFactory* factory = nullptr;
    IDispatch* object = nullptr;
    if (FAILED(getClassObject(id, IID_IClassFactory, reinterpret_cast<void**>(&factory))) ||
        FAILED(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&object))))
        return 1;
    object->Release();
    const long long first = nanosecondsSince(start);

    constexpr int kRounds = 100'000;
    const auto later = Clock::now();
    for (int round = 0; round < kRounds; ++round) {
        if (FAILED(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&object))))
            return 1;
        object->Release();
    }
    std::printf("%lld %lld\n", first, nanosecondsSince(later) / kRounds);
    factory->Release();
}
