#include <norvakavlor/text/convert.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>

namespace norvakavlor {
namespace {

[[noreturn]] void mismatch() { throw runtimeError(RuntimeError::TypeMismatch); }
[[noreturn]] void overflow() { throw runtimeError(RuntimeError::Overflow); }

bool isDigit(char character) { return character >= '0' && character <= '9'; }

std::string_view trimWhiteSpace(std::string_view text) {
    constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";
    const size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

/// "&H1F" and "&O17", or nothing for other texts. As in Basic, a number that needs all bits of its type is
/// negative.
std::optional<double> parseRadix(std::string_view text, int bits) {
    if (text.size() < 3 || text[0] != '&')
        return std::nullopt;
    const char letter = upperCase(text.substr(1, 1))[0];
    if (letter != 'H' && letter != 'O')
        return std::nullopt;
    uint64_t number = 0;
    const auto [end, failure] =
        std::from_chars(text.data() + 2, text.data() + text.size(), number, letter == 'H' ? 16 : 8);
    if (end != text.data() + text.size())
        return std::nullopt;
    if (failure != std::errc() || number > std::numeric_limits<uint32_t>::max())
        overflow();
    const auto value = static_cast<double>(number);
    const double range = std::ldexp(1.0, bits);
    return value >= range / 2 && value < range ? value - range : value;
}

/// A number as Automation reads it for US English: blanks, sign or currency sign in front, a sign behind,
/// parentheses for negatives, thousands' commas, an exponent.
class NumberReader {
public:
    explicit NumberReader(std::string_view text) : rest_(trimWhiteSpace(text)) {}

    std::optional<double> read() {
        readAffixes("$(");
        readDigits();
        if (!anyDigit_ || !readExponent())
            return std::nullopt;
        readAffixes("$)");
        if (!rest_.empty() || openParenthesis_)
            return std::nullopt;
        return value();
    }

private:
    bool take(char character) {
        if (!rest_.starts_with(character))
            return false;
        rest_.remove_prefix(1);
        return true;
    }

    /// Reads signs before or after the digits: each at most once in the whole text.
    void readAffixes(std::string_view allowed) {
        const bool inFront = allowed.ends_with('(');
        for (;;) {
            if (take(' ') || take('\t'))
                continue;
            if (!sign_ && (rest_.starts_with('+') || rest_.starts_with('-'))) {
                sign_ = true;
                negative_ = rest_.front() == '-';
                rest_.remove_prefix(1);
            } else if (!currency_ && take('$')) {
                currency_ = true;
            } else if (inFront && !sign_ && take('(')) {
                sign_ = negative_ = openParenthesis_ = true;
            } else if (!inFront && openParenthesis_ && take(')')) {
                openParenthesis_ = false;
            } else {
                return;
            }
        }
    }

    void readDigits() {
        bool inFraction = false;
        for (; !rest_.empty(); rest_.remove_prefix(1)) {
            const char character = rest_.front();
            if (isDigit(character)) {
                anyDigit_ = true;
                digits_ += character;
            } else if (character == '.' && !inFraction) {
                inFraction = true;
                digits_ += character;
            } else if (character != ',' || inFraction || !anyDigit_) {
                return;
            }
        }
    }

    /// False if an exponent's letter has no digits after it.
    bool readExponent() {
        if (rest_.empty() || std::string_view("eEdD").find(rest_.front()) == std::string_view::npos)
            return true;
        rest_.remove_prefix(1);
        if (!take('+') && take('-'))
            exponent_ += '-';
        const size_t signLength = exponent_.size();
        for (; !rest_.empty() && isDigit(rest_.front()); rest_.remove_prefix(1))
            exponent_ += rest_.front();
        return exponent_.size() > signLength;
    }

    double value() const {
        std::string text = digits_;
        if (!exponent_.empty())
            text.append("e").append(exponent_);
        double number = 0;
        const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (failure == std::errc::result_out_of_range) {
            if (magnitude() > 0)
                overflow();
            number = 0; // too small: it counts as 0
        }
        return negative_ ? -number : number;
    }

    /// The first nonzero digit's power of ten, plus one; only the sign is right for a huge exponent.
    int64_t magnitude() const {
        int64_t exponent = 0;
        const auto [end, failure] =
            std::from_chars(exponent_.data(), exponent_.data() + exponent_.size(), exponent);
        if (failure == std::errc::result_out_of_range)
            return exponent_.starts_with('-') ? -1 : 1;
        const size_t point = std::min(digits_.find('.'), digits_.size());
        return exponent + static_cast<int64_t>(point) -
               static_cast<int64_t>(digits_.find_first_of("123456789"));
    }

    std::string_view rest_;
    std::string digits_;   ///< with the point
    std::string exponent_; ///< with its minus sign
    bool anyDigit_ = false;
    bool negative_ = false;
    bool sign_ = false;
    bool currency_ = false;
    bool openParenthesis_ = false;
};

double numberOf(std::string_view text, int bits) {
    if (const auto number = parseRadix(trimWhiteSpace(text), bits))
        return *number;
    if (const auto number = NumberReader(text).read())
        return *number;
    mismatch();
}

template <class Integer> Integer toInteger(double number) {
    // Rounds to the nearest integer, halves to even, whatever the thread's rounding mode.
    const double rounded = number - std::remainder(number, 1.0);
    const bool inRange =
        rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max();
    if (!inRange)
        overflow(); // also for a NaN
    return static_cast<Integer>(rounded);
}

} // namespace

int16_t toInt16(double number) { return toInteger<int16_t>(number); }
int32_t toInt32(double number) { return toInteger<int32_t>(number); }
int16_t toInt16(std::string_view text) { return toInt16(numberOf(text, 16)); }
int32_t toInt32(std::string_view text) { return toInt32(numberOf(text, 32)); }
double toDouble(std::string_view text) { return numberOf(text, 32); }

bool toBoolean(std::string_view text) {
    const std::string word = upperCase(text);
    if (word == "TRUE" || word == "#TRUE#")
        return true;
    if (word == "FALSE" || word == "#FALSE#")
        return false;
    return toDouble(text) != 0;
}

Date toDate(double days) {
    const Date date{days};
    civilTime(date); // raises beyond the calendar
    return date;
}

bool isNumeric(std::string_view text) {
    return ignoringErrors([&] { toDouble(text); });
}

std::string toText(double number) {
    if (number == 0)
        return "0"; // without the sign of a negative zero
    constexpr int kSignificantDigits = 15;
    char buffer[32];
    const auto [end, failure] =
        std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::general, kSignificantDigits);
    return failure == std::errc() ? upperCase({buffer, static_cast<size_t>(end - buffer)}) : std::string();
}

std::string toText(bool value) { return value ? "True" : "False"; }

} // namespace norvakavlor
