#include "console.h"

#include "command.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace norvakavlor::kavlor {

std::filesystem::path pathFrom(std::string_view text) { return {std::u8string(text.begin(), text.end())}; }

std::string pathText(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

std::string inTone(Tone tone, const std::string& text) {
    static const bool coloured = isTerminal(Stream::Output) && std::getenv("NO_COLOR") == nullptr &&
                                 std::getenv("TERM") != std::string_view("dumb");
    if (!coloured)
        return text;
    static constexpr const char* kCodes[] = {"32", "33", "31", "2", "1"};
    return std::string("\x1b[") + kCodes[static_cast<size_t>(tone)] + "m" + text + "\x1b[0m";
}

std::string plain(std::string_view text) {
    std::string result;
    for (size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const bool lineBreak = byte == '\n';
        // U+0080 to U+009F, which some terminals obey, are two bytes in UTF-8.
        if (byte == 0xC2 && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0) {
            result += ' ';
            ++at;
        } else {
            result += (byte < 0x20 && !lineBreak) || byte == 0x7F ? ' ' : text[at];
        }
    }
    return result;
}

std::string bar(double share, size_t width) {
    static constexpr const char* kEighths[] = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
    const auto eighths = static_cast<size_t>(std::clamp(share, 0.0, 1.0) * static_cast<double>(width * 8));
    std::string result;
    for (size_t cell = 0; cell < eighths / 8; ++cell)
        result += "█";
    result += kEighths[eighths % 8];
    result.resize(result.size() + width - eighths / 8 - (eighths % 8 != 0), ' ');
    return result;
}

std::optional<std::string> readLine() {
    std::string line;
    if (!std::getline(std::cin, line)) {
        checkInterrupted();
        return std::nullopt;
    }
    if (line.ends_with('\r'))
        line.pop_back();
    return line;
}

bool confirm(const std::string& question) {
    if (!isTerminal(Stream::Input))
        throw Failure("there is no terminal to ask on: --yes goes without asking");
    std::fprintf(stderr, "%s [y/N] ", plain(question).c_str());
    const auto answer = readLine();
    return answer && (*answer == "y" || *answer == "Y" || *answer == "yes");
}

Progress::Progress(std::string what, size_t total)
    : what_(std::move(what)), total_(total), shown_(isTerminal(Stream::Error)) {
    show();
}

Progress::~Progress() {
    if (shown_)
        std::fputs("\r\x1b[K", stderr);
}

void Progress::step() {
    checkInterrupted();
    count();
}

void Progress::count() {
    ++done_;
    if (done_ % 64 == 0)
        show();
}

void Progress::show() const {
    if (shown_)
        std::fprintf(stderr, "\r%s %s of %s", what_.c_str(), grouped(done_).c_str(), grouped(total_).c_str());
}

std::string grouped(size_t number) {
    std::string digits = std::to_string(number);
    for (size_t at = digits.size(); at > 3; at -= 3)
        digits.insert(at - 3, ",");
    return digits;
}

std::string counted(size_t number, const std::string& one, const std::string& many) {
    return grouped(number) + " " + (number == 1 ? one : many);
}

std::string describe(const Error& error) {
    // The classes' own errors travel as a large negative number; people know them by their code.
    constexpr int64_t kObjectErrorBase = 0x80040000;
    const int64_t code = static_cast<int64_t>(static_cast<uint32_t>(error.number())) - kObjectErrorBase;
    const int64_t shown = error.number() < 0 && code >= 0 && code < 0x10000 ? code : error.number();
    return error.description() + " (error " + std::to_string(shown) + ")";
}

} // namespace norvakavlor::kavlor
