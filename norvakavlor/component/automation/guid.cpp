#include <norvakavlor/component/automation/guid.h>

#include <mutex>
#include <norvakavlor/platform/windows/wide_text.h>
#include <norvakavlor/runtime/text.h>
#include <unordered_map>

namespace norvakavlor {

GUID toGuid(const Uuid& uuid) {
    const auto& bytes = uuid.bytes;
    GUID guid;
    guid.Data1 = static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
                 static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
    guid.Data2 = static_cast<uint16_t>(bytes[4] << 8 | bytes[5]);
    guid.Data3 = static_cast<uint16_t>(bytes[6] << 8 | bytes[7]);
    for (size_t index = 0; index < 8; ++index)
        guid.Data4[index] = bytes[index + 8];
    return guid;
}

std::wstring toRegistryText(const Uuid& uuid) {
    return L"{" + platform::toWide(upperCase(uuid.toText())) + L"}";
}

const ClassGuids& guidsOf(const ClassInfo& info) {
    // Objects of different threads may ask at once. The entries stay where they are.
    static std::mutex mutex;
    static std::unordered_map<const ClassInfo*, ClassGuids> known;
    const std::lock_guard lock(mutex);
    auto found = known.find(&info);
    if (found == known.end()) {
        const ClassGuids guids{toGuid(classId(info.name)), toGuid(interfaceId(info.name))};
        found = known.emplace(&info, guids).first;
    }
    return found->second;
}

} // namespace norvakavlor
