#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/crypto/encryption.h>
#include <norvakavlor/lessons/lesson_files.h>
#include <norvakavlor/platform/digest.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/url.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/text/utf8.h>
#include <norvakavlor/xml/decode.h>
#include <string>
#include <tests/support/fixtures.h>
#include <vector>

// Functions of texts alone, as their tables in tests/data have them.
namespace norvakavlor {
namespace {

using namespace std::string_literals;
using namespace norvakavlor::testing;

using In = const std::vector<std::string>&;

std::string word(bool value) { return value ? "true" : "false"; }

template <class Digest> std::string hexadecimal(const Digest& digest) {
    std::string text;
    for (const uint8_t byte : digest) {
        text += "0123456789abcdef"[byte >> 4];
        text += "0123456789abcdef"[byte & 0xF];
    }
    return text;
}

std::string shown(const CivilTime& time) {
    std::string text;
    for (const int part : {time.year, time.month, time.day, time.hour, time.minute, time.second})
        text += (text.empty() ? "" : " ") + std::to_string(part);
    return text;
}

std::string joined(const std::vector<std::string>& pieces) {
    std::string text;
    for (const std::string& piece : pieces)
        text += (&piece == pieces.data() ? "" : ",") + piece;
    return text;
}

/// The columns of a table: so many arguments, then what each function makes of them.
const struct {
    const char* table;
    size_t arguments;
    std::vector<std::function<std::string(In)>> functions;
} kTables[] = {
    {"convert.integers",
     1,
     {[](In in) { return std::to_string(toInt16(in[0])); },
      [](In in) { return std::to_string(toInt32(in[0])); }, [](In in) { return word(isNumeric(in[0])); }}},
    {"convert.doubles", 1, {[](In in) { return toText(toDouble(in[0])); }}},
    {"convert.booleans", 1, {[](In in) { return toText(toBoolean(in[0])); }}},
    {"date.dates", 1, {[](In in) { return shown(civilTime(toDate(in[0]))); }}},
    {"date.written",
     1,
     {[](In in) { return toText(Date{toDouble(in[0])}); }, [](In in) { return toText(toDate(in[1])); }}},
    {"text.letter_case", 1, {[](In in) { return upperCase(in[0]); }}},
    {"text.comparisons",
     2,
     {[](In in) { return word(equalIgnoringCase(in[0], in[1])); },
      [](In in) { return word(containsIgnoringCase(in[0], in[1])); }}},
    {"text.malformed", 1, {[](In in) { return wellFormedUtf8(in[0]); }}},
    {"text.malformed", 1, {[](In in) { return toUtf8(toUtf16(in[0])); }}},
    {"text.trimmed", 1, {[](In in) { return std::string(trimBlanks(in[0])); }}},
    {"text.code_page", 1, {[](In in) { return platform::toSystemCodePage(in[0]); }}},
    {"text.digests", 1, {[](In in) { return hexadecimal(platform::md5(in[0])); }}},
    {"text.passwords", 1, {[](In in) { return New<Encryption>()->Encrypt(in[0]); }}},
    {"decode.files", 1, {[](In in) {
         std::string text(in[0]);
         return xml::decodeFile(text) ? text : "(nothing)";
     }}},
    {"decode.replies", 2, {[](In in) { return xml::decodeReply(in[0], in[1]); }}},
    {"url.encoded", 1, {[](In in) { return platform::encodeUrl(in[0]); }}},
    {"url.addresses", 1, {[](In in) {
         return platform::isWebAddress(in[0]) ? std::string(platform::hostOf(in[0])) : "";
     }}},
    {"url.redirects", 2, {[](In in) { return platform::resolveUrl(in[0], in[1]); }}},
    {"location.parts",
     1,
     {[](In in) { return word(IsURL(in[0])); }, [](In in) { return URLBase(in[0]); },
      [](In in) { return URLFileName(in[0]); }, [](In in) { return URLExtraQuery(in[0]); }}},
    {"location.directories",
     1,
     {[](In in) { return EnsureTrailingSlash(in[0]); }, [](In in) { return withSeparator(in[0]); }}},
    {"location.file_names", 1, {[](In in) { return documentFileName(in[0]); }}},
    {"location.lists", 1, {[](In in) { return joined(splitDirectories(in[0])); }}},
    {"location.queries", 2, {[](In in) {
         std::string url = in[0];
         AppendQuery(url, in[1]);
         return url;
     }}},
    {"files.names",
     1,
     {[](In in) { return platform::baseName(in[0]); }, [](In in) { return platform::extensionName(in[0]); },
      [](In in) { return word(holdsSeparator(in[0])); }}},
    {"exams.types",
     1,
     {[](In in) { return word(isExamFile(in[0], -1)); }, [](In in) { return word(isExamFile(in[0], 1)); },
      [](In in) { return word(isExamFile(in[0], 2)); },
      [](In in) { return word(isExamFile(in[0], 0) || isExamFile(in[0], 3)); }}},
    {"exams.attempts", 1, {[](In in) { return std::to_string(attemptNumber(in[0])); }}},
    {"exams.attempt_names", 3, {[](In in) { return attemptFileName(in[0], in[1], toInt16(in[2])); }}},
    {"lessons.types",
     1,
     {[](In in) { return word(isLessonFile(in[0], -1)); }, [](In in) { return word(isLessonFile(in[0], 1)); },
      [](In in) { return word(isLessonFile(in[0], 2)); },
      [](In in) { return word(isLessonFile(in[0], 0)); }}},
    {"lessons.copies", 2, {[](In in) { return studentCopyName(in[0], in[1]); }}}};

TEST(Functions, GiveWhatTheirTablesSay) {
    for (const auto& table : kTables) {
        for (std::vector<std::string> row : tableRows(table.table)) {
            row.resize(std::max(row.size(), table.arguments + table.functions.size()));
            for (size_t index = 0; index < table.functions.size(); ++index) {
                EXPECT_EQ(outcome([&] { return table.functions[index](row); }), row[table.arguments + index])
                    << table.table << ": " << row[0] << ", column " << index;
            }
        }
    }
}

TEST(Errors, AreIgnoredUnlessMemoryIsWanting) {
    ignoringErrors([] { throw runtimeError(RuntimeError::Overflow); });
    EXPECT_THROW(ignoringErrors([] { throw runtimeError(RuntimeError::OutOfMemory); }), Error);
}

TEST(Convert, RoundsNumbersHalvesToEven) {
    for (const double number : {0.5, 1.5, -0.5, -1.5, 2.4999, 32767.49, -32768.5})
        EXPECT_EQ(toInt16(number), std::nearbyint(number)) << number;
    for (const double number : {32767.5, -32769.0, 1e300, std::nan("")})
        EXPECT_EQ(errorNumber([&] { toInt16(number); }), 6) << number;
    EXPECT_EQ(toInt32(2147483647.4), 2147483647);
    EXPECT_EQ(errorNumber([] { toInt32(std::nan("")); }), 6);
    EXPECT_EQ(errorNumber([] { toText(Date{std::nan("")}); }), 6);
}

TEST(Date, IsUnsetInTheYear1899) {
    for (const char* text : {"14:05", "1/1/1899"})
        EXPECT_FALSE(toDate(text).isSet()) << text;
    for (const char* text : {"12/31/1898", "1/1/1900"})
        EXPECT_TRUE(toDate(text).isSet()) << text;
}

TEST(Date, KeepsEverySecondOfSomeDays) {
    for (const int year : {100, 1899, 1900, 2004, 9999}) {
        for (int second = 0; second < 24 * 60 * 60; second += 17) {
            const CivilTime time{year, 2, 28, second / 3600, second / 60 % 60, second % 60};
            ASSERT_EQ(shown(civilTime(dateOf(time))), shown(time));
            ASSERT_EQ(shown(civilTime(toDate(toText(dateOf(time))))), shown(time));
        }
    }
}

TEST(Text, OrdersByUtf16Units) {
    const char* const ascending[] = {"",  "A",   "A ", "AA", "B",          "a",      "é",     "ÿ",
                                     "Ā", "퟿", "𐀀",  "𐀀a", "\U0010FFFF", "\uE000", "\uFFFD"};
    for (size_t left = 0; left < std::size(ascending); ++left) {
        for (size_t right = 0; right < std::size(ascending); ++right) {
            const int order = left < right ? -1 : left > right ? 1 : 0;
            EXPECT_EQ(compareByUtf16(ascending[left], ascending[right]), order) << left << ' ' << right;
        }
    }
}

TEST(Text, TurnsToUtf16AndBack) {
    for (const auto& [utf8, utf16] :
         {std::pair{"a\0b"s, u"a\0b"s},
          {"é€\U0001F600", u"é€\U0001F600"},
          {"\uD7FF\uE000\uFFFF\U00010000\U0010FFFF", u"\uD7FF\uE000\uFFFF\U00010000\U0010FFFF"}}) {
        EXPECT_EQ(toUtf16(utf8), utf16) << utf8;
        EXPECT_EQ(toUtf8(utf16), utf8) << utf8;
        EXPECT_EQ(utf16Length(utf8), utf16.size()) << utf8;
    }
    for (const auto& lone : {u"a\xD800"s, u"a\xDFFF"s, u"a\xDBFF"s})
        EXPECT_EQ(toUtf8(lone), "a\uFFFD");
    EXPECT_EQ(toUtf8(u"\xDC00\xD800z"s), "\uFFFD\uFFFDz");
}

} // namespace
} // namespace norvakavlor
