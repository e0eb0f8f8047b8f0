#include <norvakavlor/runtime/convert.h>

#include <array>
#include <charconv>
#include <cmath>
#include <norvakavlor/runtime/error.h>
#include <norvakavlor/runtime/text.h>
#include <utility>
#include <vector>

namespace norvakavlor {
namespace {

constexpr std::array kMonths{"JANUARY", "FEBRUARY", "MARCH",     "APRIL",   "MAY",      "JUNE",
                             "JULY",    "AUGUST",   "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};
constexpr std::array kWeekdays{"SUNDAY", "MONDAY", "TUESDAY", "WEDNESDAY", "THURSDAY", "FRIDAY", "SATURDAY"};

/// The position, from 1, of a name given whole or by its first three letters; 0 for another word.
template <size_t kCount> int positionOf(const std::array<const char*, kCount>& names, std::string_view word) {
    for (size_t position = 0; position < kCount; ++position) {
        const std::string_view name = names[position];
        if (word == name || word == name.substr(0, 3))
            return static_cast<int>(position) + 1;
    }
    return 0;
}

/// A piece of a date's text: a number, a word in upper case, or a separator.
struct Token {
    int number = -1;
    size_t digits = 0;
    std::string word;
    char separator = 0;
    bool afterBlank = false;

    bool isNumber() const { return digits != 0; }
};

/// Nothing when the text holds a character that no date has.
std::optional<std::vector<Token>> tokensOf(std::string_view text) {
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    const auto isLetter = [](char character) {
        return (character | 0x20) >= 'a' && (character | 0x20) <= 'z';
    };
    std::vector<Token> tokens;
    bool afterBlank = false;
    for (size_t position = 0; position < text.size();) {
        const char first = text[position];
        if (first == ' ' || first == '\t') {
            afterBlank = true;
            ++position;
            continue;
        }
        Token token;
        token.afterBlank = std::exchange(afterBlank, false);
        size_t end = position + 1;
        if (isDigit(first)) {
            while (end < text.size() && isDigit(text[end]))
                ++end;
            token.digits = end - position;
            if (token.digits > 4)
                return std::nullopt;
            std::from_chars(text.data() + position, text.data() + end, token.number);
        } else if (isLetter(first)) {
            while (end < text.size() && isLetter(text[end]))
                ++end;
            token.word = upperCase(text.substr(position, end - position));
        } else if (std::string_view("/-:,").find(first) != std::string_view::npos) {
            token.separator = first;
        } else {
            return std::nullopt;
        }
        tokens.push_back(std::move(token));
        position = end;
    }
    return tokens;
}

/// Reads dates as Automation does for US English: a date, a time of day, or both in either order.
class DateReader {
public:
    explicit DateReader(std::vector<Token> tokens) : tokens_(std::move(tokens)) {}

    bool read(CivilTime& result) {
        bool hasDate = false;
        bool hasTime = false;
        while (at_ < tokens_.size()) {
            const bool timeNext =
                peek(0).isNumber() && (peek(1).separator == ':' || isHalfOfDay(peek(1).word));
            if (timeNext ? std::exchange(hasTime, true) || !readTime(result)
                         : std::exchange(hasDate, true) || !readDate(result)) {
                return false;
            }
        }
        return hasDate || hasTime;
    }

private:
    const Token& peek(size_t ahead) const {
        static const Token kEnd;
        return at_ + ahead < tokens_.size() ? tokens_[at_ + ahead] : kEnd;
    }
    bool take(char separator) {
        if (peek(0).separator != separator)
            return false;
        ++at_;
        return true;
    }
    bool takeNumber(int& number) {
        if (!peek(0).isNumber())
            return false;
        number = tokens_[at_++].number;
        return true;
    }
    static bool isHalfOfDay(std::string_view word) {
        return word == "AM" || word == "PM" || word == "A" || word == "P";
    }

    bool readTime(CivilTime& result) {
        takeNumber(result.hour);
        if (take(':') && !takeNumber(result.minute))
            return false;
        if (take(':') && !takeNumber(result.second))
            return false;
        if (isHalfOfDay(peek(0).word)) {
            const bool afternoon = tokens_[at_++].word.front() == 'P';
            if (result.hour > 12)
                return false;
            result.hour = result.hour % 12 + (afternoon ? 12 : 0);
        }
        return true;
    }

    /// A separator between two parts of a date: "/", "-", "," or only a blank.
    void skipSeparator() {
        if (!take('/') && !take('-'))
            take(',');
    }

    bool readDate(CivilTime& result) {
        if (positionOf(kWeekdays, peek(0).word) != 0) {
            ++at_;
            take(',');
        }
        if (readMonthName(result.month)) {
            skipSeparator();
            if (!takeNumber(result.day))
                return false;
            skipSeparator();
            return takeYear(result.year);
        }
        const Token first = peek(0);
        if (!first.isNumber())
            return false;
        ++at_;
        const Token separator = peek(0);
        skipSeparator();
        if (readMonthName(result.month)) {
            result.day = first.number;
            skipSeparator();
            return takeYear(result.year);
        }
        // Three numbers want the same written separator twice.
        if (separator.separator != '/' && separator.separator != '-')
            return false;
        int second = 0;
        if (!takeNumber(second) || !take(separator.separator))
            return false;
        if (first.digits > 2) {
            result.year = first.number;
            result.month = second;
            return takeNumber(result.day);
        }
        result.month = first.number;
        result.day = second;
        if (result.month > 12)
            std::swap(result.month, result.day);
        return takeYear(result.year);
    }

    bool readMonthName(int& month) {
        const int named = positionOf(kMonths, peek(0).word);
        if (named == 0)
            return false;
        month = named;
        ++at_;
        return true;
    }

    bool takeYear(int& year) {
        const size_t digits = peek(0).digits;
        if (!takeNumber(year))
            return false;
        if (digits <= 2)
            year += year < 30 ? 2000 : 1900;
        return true;
    }

    std::vector<Token> tokens_;
    size_t at_ = 0;
};

/// "2004-03-14T14:05:09.5+01:00" without what a local time of whole seconds does not have: the "T" becomes a
/// blank, fraction and zone go. Another text stays as it is.
std::string withoutIsoParts(std::string_view text) {
    std::string plain(text);
    const bool iso =
        plain.size() > 11 && plain[4] == '-' && plain[7] == '-' && (plain[10] == 'T' || plain[10] == 't');
    if (!iso)
        return plain;
    plain[10] = ' ';
    constexpr std::string_view kTimeCharacters = "0123456789:";
    const size_t end = plain.find_first_not_of(kTimeCharacters, 11);
    if (end == std::string::npos)
        return plain;
    const std::string_view suffix = std::string_view(plain).substr(end);
    // Only what a fraction and a zone are made of goes; anything else keeps the text from being a date.
    if (suffix.find_first_not_of("0123456789:.,+-Zz") != std::string_view::npos)
        return plain;
    return plain.substr(0, end);
}

std::string twoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

} // namespace

std::optional<Date> parseDate(std::string_view text) {
    const auto tokens = tokensOf(withoutIsoParts(trimBlanks(text)));
    CivilTime time;
    if (!tokens || !DateReader(*tokens).read(time))
        return std::nullopt;
    std::optional<Date> date;
    ignoringErrors([&] { date = dateOf(time); });
    return date;
}

Date toDate(std::string_view text) {
    if (const auto date = parseDate(text))
        return *date;
    throw runtimeError(RuntimeError::TypeMismatch);
}

std::string toText(Date date) {
    const CivilTime time = civilTime(date);
    const std::string day =
        std::to_string(time.month) + "/" + std::to_string(time.day) + "/" + std::to_string(time.year);
    if (time.hour == 0 && time.minute == 0 && time.second == 0 && std::trunc(date.days) != 0)
        return day;
    const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
    const std::string clock = std::to_string(hour) + ":" + twoDigits(time.minute) + ":" +
                              twoDigits(time.second) + (time.hour < 12 ? " AM" : " PM");
    return std::trunc(date.days) == 0 ? clock : day + " " + clock;
}

} // namespace norvakavlor
