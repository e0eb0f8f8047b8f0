#include <tools/idl/raised_errors.h>

#include <algorithm>
#include <cstdio>
#include <norvakavlor/component/class_list.h>
#include <optional>
#include <regex>
#include <set>
#include <stdexcept>
#include <tools/idl/member_declarations.h>
#include <utility>

namespace norvakavlor {
namespace {

constexpr int64_t kObjectErrors = 0x80040000;

/// A class's own error: its code without the base.
std::optional<int64_t> objectCode(int32_t number) {
    const int64_t code = static_cast<uint32_t>(number) - kObjectErrors;
    return number < 0 && code < 0x10000 ? std::optional(code) : std::nullopt;
}

using Numbers = std::set<int32_t>;

std::string listed(const Numbers& numbers) {
    std::string text;
    for (const int32_t number : numbers)
        text += (text.empty() ? "" : ", ") + errorName(number);
    return text.empty() ? "nothing" : text;
}

/// The numbers that the headers say, which may refer to each other: "Raises as Students::Load does".
class HeaderNumbers {
public:
    explicit HeaderNumbers(const HeaderClasses& headers) : headers_(headers) {}

    Numbers of(const ClassInfo& info, const Member& member) {
        Numbers numbers;
        for (const Declaration* declared : declarationsOf(headers_, info, member)) {
            for (const std::string& sentence : sentencesOf(declared->comment))
                numbers.merge(numbersIn(sentence, info, member));
        }
        return numbers;
    }

private:
    Numbers numbersIn(const std::string& sentence, const ClassInfo& info, const Member& member) {
        static const std::regex anyForm(R"(\b[Rr]aises?\b)");
        const auto refuse = [&](const std::string& why) {
            throw std::runtime_error(info.name + "." + member.name + ": " + why + ": \"" + sentence + "\"");
        };
        if (!tellsErrors(sentence)) {
            if (std::regex_search(sentence, anyForm))
                refuse("what is raised is said in a sentence that begins with \"Raises\"");
            return {};
        }
        Numbers numbers;
        if (sentence == "Raises nothing.")
            return numbers;
        static const std::regex reference(R"(\bas ((?:\w+::)?\w+)(?: and ((?:\w+::)?\w+))? do(?:es)?\b)");
        const std::string rest = std::regex_replace(sentence, reference, "");
        const bool refers = rest != sentence;
        if (std::regex_search(rest, std::regex(R"(\bas [\w: ]+ do(es)?\b|\bwhat [\w: ]+ raises?\b)")))
            refuse("another member is named as in \"as Students::Load does\"");
        std::smatch found;
        for (auto at = sentence.cbegin(); std::regex_search(at, sentence.cend(), found, reference);
             at = found[0].second) {
            for (const size_t group : {1U, 2U}) {
                if (found[group].matched && !addOf(found[group], info, numbers))
                    refuse("there is no " + found[group].str());
            }
        }
        static const std::regex number(R"(\b(0x[0-9A-F]{8}|\d+)(-bit| bits| characters)?\b)");
        bool hasNumber = false;
        for (auto at = rest.cbegin(); std::regex_search(at, rest.cend(), found, number);
             at = found[0].second) {
            if (found[2].matched)
                continue;
            hasNumber = true;
            const bool isObjects = found[1].str().starts_with('6') &&
                                   rest.find("object error") != std::string::npos && found[1].length() == 3;
            numbers.insert(static_cast<int32_t>(
                static_cast<uint32_t>(std::stoll(found[1], nullptr, 0) + (isObjects ? kObjectErrors : 0))));
        }
        if (!hasNumber && !refers)
            refuse("there is no number in it");
        return numbers;
    }

    bool addOf(const std::string& name, const ClassInfo& own, Numbers& numbers) {
        const size_t colons = name.find("::");
        const std::string className = colons == std::string::npos ? own.name : name.substr(0, colons);
        const std::string memberName = colons == std::string::npos ? name : name.substr(colons + 2);
        const ClassInfo* info = findCreatableClass(className);
        const Member* member = info ? info->find(memberName) : nullptr;
        if (!member)
            return false;
        numbers.merge(of(*info, *member));
        return true;
    }

    const HeaderClasses& headers_;
};

} // namespace

bool tellsErrors(std::string_view sentence) { return sentence.starts_with("Raises "); }

std::string errorName(int32_t number) {
    if (const auto code = objectCode(number))
        return "object error " + std::to_string(*code);
    if (number >= 0)
        return std::to_string(number);
    char text[16];
    std::snprintf(text, sizeof text, "&H%08X", static_cast<unsigned>(number));
    return text;
}

std::string faultsOfErrors(const HeaderClasses& headers) {
    std::string faults;
    Numbers known;
    for (const ErrorMeaning& meaning : errorMeanings())
        known.insert(meaning.number);
    auto unused = errorRows();
    HeaderNumbers headerNumbers(headers);
    for (const ClassInfo* info : allClasses()) {
        for (const Member& member : info->members()) {
            const std::string name = info->name + "." + member.name;
            Numbers inRows;
            for (const ErrorRow& row : unused[name])
                inRows.insert(row.numbers.begin(), row.numbers.end());
            unused.erase(name);
            const Numbers inHeader = headerNumbers.of(*info, member);
            if (inRows != inHeader)
                faults += name + ": its header raises " + listed(inHeader) +
                          ", tools/idl/error_rows.cpp has " + listed(inRows) + "\n";
            for (const int32_t number : inRows) {
                if (!known.contains(number))
                    faults += name + ": errorMeanings() lacks " + errorName(number) + "\n";
            }
        }
    }
    for (const auto& [name, rows] : unused)
        faults += "tools/idl/error_rows.cpp: no class has the member " + name + "\n";
    return faults;
}

} // namespace norvakavlor
