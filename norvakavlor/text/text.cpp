#include <norvakavlor/text/text.h>

#include <algorithm>
#include <norvakavlor/text/case_table.h>
#include <norvakavlor/text/utf8.h>
#include <span>

namespace norvakavlor {
namespace {

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text,
                               [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

char32_t upper(char32_t code) {
    const auto ranges = upperCaseRanges();
    const auto after = std::ranges::upper_bound(ranges, code, {}, &CaseRange::first);
    if (after == ranges.begin())
        return code;
    const CaseRange& range = *(after - 1);
    if (code > range.last || (code - range.first) % range.step != 0)
        return code;
    return static_cast<char32_t>(static_cast<int32_t>(code) + range.distance);
}

char upperAscii(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

} // namespace

std::string upperCase(std::string_view text) {
    std::string result(text);
    if (isAscii(text)) {
        std::ranges::transform(result, result.begin(), upperAscii);
        return result;
    }
    result.clear();
    while (!text.empty()) {
        const CodePoint point = decodeCodePoint(text);
        if (point.valid) {
            appendUtf8(result, upper(point.value));
        } else {
            result += text.front(); // a byte that is not UTF-8 stays
        }
        text.remove_prefix(point.length);
    }
    return result;
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
    if (isAscii(left) && isAscii(right))
        return std::ranges::equal(left, right, {}, upperAscii, upperAscii);
    return upperCase(left) == upperCase(right);
}

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    return upperCase(text).find(upperCase(part)) != std::string::npos;
}

int compareByUtf16(std::string_view left, std::string_view right) {
    const auto [atLeft, atRight] = std::ranges::mismatch(left, right);
    if (atLeft == left.end() || atRight == right.end()) {
        return atLeft == left.end() ? (atRight == right.end() ? 0 : -1) : 1;
    }
    // In UTF-16 the code points beyond U+FFFF (lead bytes F0 to F4) sort as surrogates, before U+E000 to
    // U+FFFF (lead bytes EE and EF); otherwise bytes and units sort alike.
    const auto rank = [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte == 0xEE || byte == 0xEF ? byte + 0x100 : int{byte};
    };
    return rank(*atLeft) < rank(*atRight) ? -1 : 1;
}

size_t utf16Length(std::string_view text) {
    size_t length = 0;
    while (!text.empty()) {
        const CodePoint point = decodeCodePoint(text);
        length += point.value > 0xFFFF ? 2 : 1;
        text.remove_prefix(point.length);
    }
    return length;
}

std::u16string toUtf16(std::string_view text) {
    std::u16string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const CodePoint point = decodeCodePoint(text);
        if (point.value > 0xFFFF) {
            result += static_cast<char16_t>(0xD7C0 + (point.value >> 10));
            result += static_cast<char16_t>(0xDC00 + (point.value & 0x3FF));
        } else {
            result += static_cast<char16_t>(point.value);
        }
        text.remove_prefix(point.length);
    }
    return result;
}

std::string toUtf8(std::u16string_view text) {
    const auto isLead = [](char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; };
    const auto isTrail = [](char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; };
    std::string result;
    result.reserve(text.size());
    for (size_t position = 0; position < text.size(); ++position) {
        const char16_t unit = text[position];
        if (isLead(unit) && position + 1 < text.size() && isTrail(text[position + 1])) {
            const char16_t trail = text[++position];
            appendUtf8(result, 0x10000u + ((unit - 0xD800u) << 10) + (trail - 0xDC00u));
        } else {
            appendUtf8(result, isLead(unit) || isTrail(unit) ? 0xFFFD : char32_t{unit});
        }
    }
    return result;
}

std::string wellFormedUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const CodePoint point = decodeCodePoint(text);
        if (point.valid) {
            result.append(text.substr(0, point.length));
        } else {
            appendUtf8(result, 0xFFFD);
        }
        text.remove_prefix(point.length);
    }
    return result;
}

std::string_view trimBlanks(std::string_view text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace norvakavlor
