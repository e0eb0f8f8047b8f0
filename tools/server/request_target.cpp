#include "request_target.h"

#include <algorithm>
#include <array>
#include <norvakavlor/text/text.h>

namespace norvakavlor::server {
namespace {

/// -1 if not a hexadecimal digit.
int hexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

std::string printable(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string line;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= ' ' && byte < 0x7F) {
            line += c;
        } else {
            line.append({'%', kDigits[byte >> 4], kDigits[byte & 0xF]});
        }
    }
    return line;
}

bool isSecret(std::string_view name) {
    constexpr std::array<std::string_view, 3> kSecrets = {"key", "LoginKey", "LoginValue"};
    const std::string plain = percentDecoded(name);
    return std::ranges::any_of(kSecrets, [&](auto secret) { return equalIgnoringCase(plain, secret); });
}

/// Extra query text may hold more "?" and "/": a pair begins after any separator.
std::string maskedPairs(std::string_view query, std::string_view separators) {
    std::string masked;
    for (size_t start = 0; start <= query.size();) {
        const size_t end = std::min(query.find_first_of(separators, start), query.size());
        const std::string_view pair = query.substr(start, end - start);
        const size_t equals = std::min(pair.find('='), pair.size());
        if (isSecret(pair.substr(0, equals)) && equals < pair.size()) {
            masked.append(pair.substr(0, equals)).append("=***");
        } else {
            masked.append(pair);
        }
        if (end < query.size())
            masked += query[end];
        start = end + 1;
    }
    return printable(masked);
}

} // namespace

std::string RequestTarget::value(std::string_view parameter) const {
    const auto found = std::ranges::find(parameters, parameter, &std::pair<std::string, std::string>::first);
    return found == parameters.end() ? std::string() : found->second;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (size_t at = 0; at < text.size(); ++at) {
        const bool whole = text[at] == '%' && at + 2 < text.size();
        const int high = whole ? hexValue(text[at + 1]) : -1;
        const int low = whole ? hexValue(text[at + 2]) : -1;
        if (high >= 0 && low >= 0) {
            decoded += static_cast<char>(high * 16 + low);
            at += 2;
        } else {
            decoded += text[at];
        }
    }
    return decoded;
}

RequestTarget parseTarget(std::string_view target) {
    RequestTarget parsed;
    const size_t question = std::min(target.find('?'), target.size());
    const std::string_view path = target.substr(0, question);
    const size_t nameStart = path.rfind('/') + 1;
    parsed.directory = percentDecoded(path.substr(0, nameStart));
    parsed.name = percentDecoded(path.substr(nameStart));
    for (size_t start = question + 1; start < target.size();) {
        const size_t end = std::min(target.find('&', start), target.size());
        const std::string_view pair = target.substr(start, end - start);
        const size_t equals = std::min(pair.find('='), pair.size());
        if (!pair.empty()) {
            parsed.parameters.emplace_back(percentDecoded(pair.substr(0, equals)),
                                           percentDecoded(pair.substr(std::min(equals + 1, pair.size()))));
        }
        start = end + 1;
    }
    return parsed;
}

std::string maskedTarget(std::string_view target) {
    const size_t question = std::min(target.find('?'), target.size());
    return printable(target.substr(0, question)) + maskedPairs(target.substr(question), "?&");
}

std::string maskedForm(std::string_view body) { return maskedPairs(body, "&"); }

} // namespace norvakavlor::server
