#include <norvakavlor/platform/document_lock_mark.h>

#include <charconv>
#include <iterator>
#include <norvakavlor/platform/this_machine.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/text/convert.h>

namespace norvakavlor::platform {
namespace {

constexpr std::string_view kProcess = "\nprocess ";
constexpr std::string_view kTaken = "\ntaken ";

std::string hexadecimal(uint64_t number) {
    char digits[16];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number, 16).ptr;
    return {digits, end};
}

std::string evidence(const std::string& documentLine) {
    return documentLine + "machine " + machineIdentity() + "\n";
}

/// What stands behind a word up to the end of its line; "" when the line is not whole.
std::string_view rest(std::string_view mark, std::string_view word) {
    const size_t start = mark.find(word);
    if (start == std::string_view::npos)
        return {};
    mark.remove_prefix(start + word.size());
    const size_t end = mark.find('\n');
    return end == std::string_view::npos ? std::string_view() : mark.substr(0, end);
}

} // namespace

std::string lockDocumentLine(uint64_t file, uint64_t changed) {
    return "document " + hexadecimal(file) + " " + hexadecimal(changed) + "\n";
}

std::string lockMark(const std::string& documentLine) {
    // Its last byte ends the line before the word.
    std::string mark = evidence(documentLine);
    mark.pop_back();
    mark.append(kProcess).append(std::to_string(processNumber()));
    return mark.append(kTaken).append(toText(now())).append("\n");
}

bool isOwnLockMark(std::string_view mark, const std::string& documentLine) {
    return mark.starts_with(evidence(documentLine));
}

std::optional<LockOwner> lockOwnerIn(std::string_view mark, const std::string& documentLine) {
    LockOwner owner;
    const std::string_view process = rest(mark, kProcess);
    const auto taken = parseDate(rest(mark, kTaken));
    if (!mark.starts_with(documentLine) || !taken ||
        std::from_chars(process.data(), process.data() + process.size(), owner.process).ec != std::errc())
        return std::nullopt;
    owner.taken = *taken;
    if (!isOwnLockMark(mark, documentLine))
        owner.state = LockOwner::State::OnOtherMachine;
    return owner;
}

} // namespace norvakavlor::platform
