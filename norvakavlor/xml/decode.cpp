#include <norvakavlor/xml/decode.h>

#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/text/utf8.h>
#include <norvakavlor/xml/characters.h>
#include <norvakavlor/xml/prolog.h>
#include <norvakavlor/xml/windows_1252.h>
#include <optional>
#include <utility>

namespace norvakavlor::xml {
namespace {

enum class Encoding { Utf8, Utf16, Utf16LittleEndian, Utf16BigEndian, Ascii, Latin1, Windows1252 };

std::optional<Encoding> encodingOf(std::string_view name) {
    constexpr std::pair<std::string_view, Encoding> kNames[] = {
        {"UTF-8", Encoding::Utf8},
        {"UTF-16", Encoding::Utf16},
        {"UTF-16LE", Encoding::Utf16LittleEndian},
        {"UTF-16BE", Encoding::Utf16BigEndian},
        {"US-ASCII", Encoding::Ascii},
        {"ISO-8859-1", Encoding::Latin1},
        {"WINDOWS-1252", Encoding::Windows1252},
    };
    for (const auto& [known, encoding] : kNames) {
        if (equalIgnoringCase(name, known))
            return encoding;
    }
    return std::nullopt;
}

/// The encoding that a byte order mark tells; takes the mark off.
std::optional<Encoding> takeByteOrderMark(std::string_view& bytes) {
    constexpr std::pair<std::string_view, Encoding> kMarks[] = {
        {"\xEF\xBB\xBF", Encoding::Utf8},
        {"\xFF\xFE", Encoding::Utf16LittleEndian},
        {"\xFE\xFF", Encoding::Utf16BigEndian},
    };
    for (const auto& [mark, encoding] : kMarks) {
        if (bytes.starts_with(mark)) {
            bytes.remove_prefix(mark.size());
            return encoding;
        }
    }
    return std::nullopt;
}

/// Bytes of an encoding as text. `wellFormed` turns false where they do not decode; such a place is U+FFFD.
std::string fromSingleBytes(std::string_view bytes, Encoding encoding, bool& wellFormed) {
    std::string text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else if (encoding == Encoding::Ascii) {
            text.append(kReplacement);
            wellFormed = false;
        } else {
            const bool differs = encoding == Encoding::Windows1252 && byte < 0xA0;
            appendUtf8(text, differs ? kWindows1252[byte - 0x80u] : byte);
        }
    }
    return text;
}

std::string fromUtf16(std::string_view bytes, bool bigEndian, bool& wellFormed) {
    std::string text;
    text.reserve(bytes.size());
    const auto unitAt = [&](size_t at) -> char32_t {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<char32_t>(bigEndian ? first << 8 | second : second << 8 | first);
    };
    const auto isLow = [&](size_t at) { return at + 1 < bytes.size() && (unitAt(at) & 0xFC00) == 0xDC00; };
    for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const char32_t unit = unitAt(at);
        if ((unit & 0xFC00) == 0xD800 && isLow(at + 2)) {
            at += 2;
            appendUtf8(text, 0x10000 + ((unit & 0x3FF) << 10) + (unitAt(at) & 0x3FF));
        } else if ((unit & 0xF800) == 0xD800) {
            text.append(kReplacement);
            wellFormed = false;
        } else {
            appendUtf8(text, unit);
        }
    }
    if (bytes.size() % 2 != 0) {
        text.append(kReplacement);
        wellFormed = false;
    }
    return text;
}

std::string decode(std::string_view bytes, Encoding encoding, bool& wellFormed) {
    switch (encoding) {
    case Encoding::Utf8:
        wellFormed = isWellFormedUtf8(bytes);
        return wellFormed ? std::string(bytes) : wellFormedUtf8(bytes);
    case Encoding::Utf16:
    case Encoding::Utf16LittleEndian:
        return fromUtf16(bytes, false, wellFormed);
    case Encoding::Utf16BigEndian:
        return fromUtf16(bytes, true, wellFormed);
    case Encoding::Ascii:
    case Encoding::Latin1:
    case Encoding::Windows1252:
        break;
    }
    return fromSingleBytes(bytes, encoding, wellFormed);
}

/// A file without a byte order mark: UTF-16 shows in its first character, "<", else the declaration tells.
std::optional<Encoding> encodingOfFile(std::string_view bytes) {
    if (bytes.starts_with(std::string_view("<\0", 2)))
        return Encoding::Utf16LittleEndian;
    if (bytes.starts_with(std::string_view("\0<", 2)))
        return Encoding::Utf16BigEndian;
    const std::string_view declared = readDeclaration(bytes).encoding;
    const auto encoding = declared.empty() ? Encoding::Utf8 : encodingOf(declared);
    // Bytes in which a declaration can be read one by one are no UTF-16, whatever it says.
    const bool contradicts = encoding == Encoding::Utf16 || encoding == Encoding::Utf16LittleEndian ||
                             encoding == Encoding::Utf16BigEndian;
    return contradicts ? std::nullopt : encoding;
}

/// The charset of a Content-Type value: `text/xml; charset="utf-8"`.
std::optional<Encoding> encodingOfContentType(std::string_view contentType) {
    while (true) {
        const size_t semicolon = contentType.find(';');
        if (semicolon == std::string_view::npos)
            return std::nullopt;
        contentType = contentType.substr(semicolon + 1);
        std::string_view parameter = trimBlanks(contentType.substr(0, contentType.find(';')));
        constexpr std::string_view kCharset = "charset=";
        if (!equalIgnoringCase(parameter.substr(0, kCharset.size()), kCharset))
            continue;
        parameter = parameter.substr(kCharset.size());
        if (parameter.size() >= 2 && parameter.front() == '"' && parameter.back() == '"')
            parameter = parameter.substr(1, parameter.size() - 2);
        return encodingOf(parameter);
    }
}

} // namespace

void checkSize(size_t bytes) {
    if (bytes > kMaximumBytes) {
        throw runtimeError(RuntimeError::DeviceError,
                           "The document is larger than " + std::to_string(kMaximumBytes >> 20) + " MiB");
    }
}

bool decodeFile(std::string& bytes) {
    std::string_view unmarked = bytes;
    auto encoding = takeByteOrderMark(unmarked);
    if (!encoding)
        encoding = encodingOfFile(unmarked);
    if (!encoding)
        return false;
    if (encoding == Encoding::Utf8) {
        if (!isWellFormedUtf8(unmarked))
            return false;
        bytes.erase(0, bytes.size() - unmarked.size());
        return true;
    }
    bool wellFormed = true;
    std::string text = decode(unmarked, *encoding, wellFormed);
    if (wellFormed)
        bytes = std::move(text);
    return wellFormed;
}

std::string decodeReply(std::string_view bytes, std::string_view contentType) {
    auto encoding = encodingOfContentType(contentType);
    std::string_view unmarked = bytes;
    const auto mark = takeByteOrderMark(unmarked);
    // The header wins over a mark of another encoding, which is then part of the text.
    const bool markFits =
        !encoding || encoding == mark || (encoding == Encoding::Utf16 && mark != Encoding::Utf8);
    if (mark && markFits) {
        encoding = mark;
        bytes = unmarked;
    }
    bool wellFormed = true;
    return decode(bytes, encoding.value_or(Encoding::Utf8), wellFormed);
}

} // namespace norvakavlor::xml
