#include <norvakavlor/text/convert.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <utility>
#include <vector>

namespace norvakavlor {
namespace {

constexpr std::array kMonths{"JANUARY", "FEBRUARY", "MARCH",     "APRIL",   "MAY",      "JUNE",
                             "JULY",    "AUGUST",   "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};
constexpr std::array kWeekdays{"SUNDAY", "MONDAY", "TUESDAY", "WEDNESDAY", "THURSDAY", "FRIDAY", "SATURDAY"};

/// The position, from 1, of a name or its first three letters; 0 for other words.
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

    bool isNumber() const { return digits != 0; }
    /// Only a year has more than two digits or exceeds a month's days.
    bool isYear() const { return digits > 2 || number > 31; }
    int asYear() const { return digits > 2 ? number : number < 30 ? 2000 + number : 1900 + number; }
};

/// Nothing if the text has a character that no date has.
std::optional<std::vector<Token>> tokensOf(std::string_view text) {
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    const auto isLetter = [](char character) {
        return (character | 0x20) >= 'a' && (character | 0x20) <= 'z';
    };
    std::vector<Token> tokens;
    for (size_t position = 0; position < text.size();) {
        const char first = text[position];
        if (first == ' ' || first == '\t') {
            ++position;
            continue;
        }
        Token token;
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
            if (timeFollows() ? std::exchange(hasTime, true) || !readTime(result)
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
    bool timeFollows() const {
        return peek(0).isNumber() && (peek(1).separator == ':' || isHalfOfDay(peek(1).word));
    }

    bool readTime(CivilTime& result) {
        takeNumber(result.hour);
        if (take(':') && !takeNumber(result.minute))
            return false;
        if (take(':') && !takeNumber(result.second))
            return false;
        if (isHalfOfDay(peek(0).word)) {
            const bool afternoon = tokens_[at_++].word.front() == 'P';
            if (result.hour <= 12) // "14:05 PM" stays 14:05
                result.hour = result.hour % 12 + (afternoon ? 12 : 0);
        }
        return true;
    }

    /// Numbers and at most one month's name, separated by "/", "-", "," or only a blank.
    bool readDate(CivilTime& result) {
        if (positionOf(kWeekdays, peek(0).word) != 0) {
            ++at_;
            take(',');
        }
        std::vector<Token> numbers;
        int month = 0;
        while (!timeFollows()) {
            const int named = positionOf(kMonths, peek(0).word);
            if (named != 0 && month == 0) {
                month = named;
            } else if (peek(0).isNumber()) {
                numbers.push_back(peek(0));
            } else {
                return false;
            }
            ++at_;
            if (at_ == tokens_.size())
                break;
            if (take(',') && timeFollows())
                break;
            if ((take('/') || take('-')) && timeFollows())
                return false;
        }
        return month != 0 ? readNamedMonth(month, numbers, result) : readNumbers(numbers, result);
    }

    static bool readNamedMonth(int month, const std::vector<Token>& numbers, CivilTime& result) {
        result.month = month;
        if (numbers.size() == 1 && numbers[0].digits > 2) { // "March 2004"
            result.day = 1;
            result.year = numbers[0].asYear();
            return true;
        }
        if (numbers.size() != 2)
            return false;
        const size_t year = numbers[0].isYear() ? 0 : 1;
        result.year = numbers[year].asYear();
        result.day = numbers[1 - year].number;
        return true;
    }

    static bool readNumbers(const std::vector<Token>& numbers, CivilTime& result) {
        if (numbers.size() != 3)
            return false;
        const bool yearFirst = numbers[0].isYear();
        result.year = numbers[yearFirst ? 0 : 2].asYear();
        result.month = numbers[yearFirst ? 1 : 0].number;
        result.day = numbers[yearFirst ? 2 : 1].number;
        if (result.month > 12)
            std::swap(result.month, result.day);
        return true;
    }

    std::vector<Token> tokens_;
    size_t at_ = 0;
};

/// Takes the pattern off the text's beginning, if it matches; "0" means any digit.
bool takePattern(std::string_view& text, std::string_view pattern) {
    const auto fits = [](char wanted, char given) {
        return wanted == '0' ? given >= '0' && given <= '9' : given == wanted;
    };
    if (text.size() < pattern.size() || !std::ranges::equal(pattern, text.substr(0, pattern.size()), fits))
        return false;
    text.remove_prefix(pattern.size());
    return true;
}

/// Turns "2004-03-14T14:05:09.5+01:00" into a local time of whole seconds: the "T" becomes a blank, fraction
/// and zone go, so the time is what its writer's clock showed. Other texts stay as they are.
std::string withoutIsoParts(std::string_view text) {
    std::string_view rest = text;
    if (!takePattern(rest, "0000-00-00T00:00"))
        return std::string(text);
    takePattern(rest, ":00");
    std::string plain(text.substr(0, text.size() - rest.size()));
    plain[10] = ' ';
    if (takePattern(rest, ".0") || takePattern(rest, ",0")) {
        while (takePattern(rest, "0")) {
        }
    }
    if (!takePattern(rest, "Z") && (takePattern(rest, "+00") || takePattern(rest, "-00"))) {
        if (!takePattern(rest, ":00"))
            takePattern(rest, "00");
    }
    return rest.empty() ? plain : std::string(text);
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
    const CivilTime zero;
    const std::string day =
        std::to_string(time.month) + "/" + std::to_string(time.day) + "/" + std::to_string(time.year);
    const bool onZeroDay = time.year == zero.year && time.month == zero.month && time.day == zero.day;
    if (time.hour == 0 && time.minute == 0 && time.second == 0 && !onZeroDay)
        return day;
    const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
    const std::string clock = std::to_string(hour) + ":" + twoDigits(time.minute) + ":" +
                              twoDigits(time.second) + (time.hour < 12 ? " AM" : " PM");
    return onZeroDay ? clock : day + " " + clock;
}

} // namespace norvakavlor
