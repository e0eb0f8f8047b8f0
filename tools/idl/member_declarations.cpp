#include <tools/idl/member_declarations.h>

#include <algorithm>
#include <cctype>
#include <stdexcept>

namespace norvakavlor {
namespace {

constexpr std::string_view kClientsName = "Clients know it as ";

bool isKnownAs(const std::string& comment, const std::string& name) {
    return comment.find(std::string(kClientsName) + "`" + name + "`.") != std::string::npos;
}

std::string setterOf(const Member& member) {
    std::string name = member.name;
    name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
    return "Set" + name;
}

} // namespace

bool tellsName(std::string_view sentence) { return sentence.starts_with(kClientsName); }

const HeaderClass& headerClassOf(const HeaderClasses& headers, const ClassInfo& info) {
    auto found = headers.find(info.name);
    if (found == headers.end())
        found = std::ranges::find_if(
            headers, [&](const auto& entry) { return isKnownAs(entry.second.comment, info.name); });
    if (found == headers.end())
        throw std::runtime_error("no header has the class " + info.name);
    return found->second;
}

std::vector<const Declaration*> declarationsOf(const HeaderClasses& headers, const ClassInfo& info,
                                               const Member& member) {
    const HeaderClass* place = &headerClassOf(headers, info);
    const std::string first = place->header;
    std::vector<const Declaration*> all, setters;
    while (true) {
        for (const Declaration& declared : place->members) {
            const bool isSetter = member.kind == Member::Kind::Property && member.put &&
                                  declared.isFunction && declared.name == setterOf(member);
            if (isSetter) {
                setters.push_back(&declared);
            } else if (declared.name == member.name || isKnownAs(declared.comment, member.name)) {
                all.push_back(&declared);
            }
        }
        const auto base = headers.find(place->base);
        if (base == headers.end())
            break;
        place = &base->second;
    }
    all.insert(all.end(), setters.begin(), setters.end());
    if (all.empty())
        throw std::runtime_error(first + " does not declare " + info.name + "." + member.name);
    return all;
}

} // namespace norvakavlor
