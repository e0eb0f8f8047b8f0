#include <norvakavlor/runtime/class_info.h>

#include <norvakavlor/text/text.h>
#include <stdexcept>
#include <string>
#include <utility>

namespace norvakavlor {
namespace {

/// FNV-1a of the upper-cased name in the range of positive numbers that Automation leaves to components.
int32_t dispatchIdOf(std::string_view upperCaseName) {
    uint32_t hash = 2166136261u;
    for (const char character : upperCaseName)
        hash = (hash ^ static_cast<unsigned char>(character)) * 16777619u;
    return static_cast<int32_t>(hash & 0x3FFFFFFFu) | 0x40000000;
}

} // namespace

void ClassInfo::add(Member member) {
    std::string key = upperCase(member.name);
    member.dispatchId = dispatchIdOf(key);
    const size_t position = members_.size();
    if (!byDispatchId_.emplace(member.dispatchId, position).second ||
        !byName_.emplace(std::move(key), position).second) {
        throw std::logic_error("two members of " + name + " collide: " + member.name);
    }
    members_.push_back(std::move(member));
}

void ClassInfo::makeDefault(std::string_view memberName) {
    const auto found = byName_.find(upperCase(memberName));
    if (found == byName_.end() || defaultMember())
        throw std::logic_error(name + " cannot have this default member: " + std::string(memberName));
    Member& member = members_[found->second];
    byDispatchId_.erase(member.dispatchId);
    member.dispatchId = 0;
    byDispatchId_.emplace(0, found->second);
}

const Member* ClassInfo::find(std::string_view memberName) const {
    const auto found = byName_.find(upperCase(memberName));
    return found == byName_.end() ? nullptr : &members_[found->second];
}

const Member* ClassInfo::find(int32_t dispatchId) const {
    const auto found = byDispatchId_.find(dispatchId);
    return found == byDispatchId_.end() ? nullptr : &members_[found->second];
}

} // namespace norvakavlor
