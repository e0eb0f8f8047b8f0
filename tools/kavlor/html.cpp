#include "html.h"

#include "text_table.h"

#include <algorithm>
#include <cmath>

namespace norvakavlor::kavlor {
namespace {

constexpr size_t kLongestName = 90; ///< characters; what is longer would bury what stands beside it

std::string width(double percentage) {
    const long tenths = std::lround(std::clamp(percentage, 0.0, 100.0) * 10);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + "%";
}

} // namespace

std::string escaped(std::string_view text) {
    std::string result;
    for (const char character : text) {
        switch (character) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        case '\'':
            result += "&#39;";
            break;
        default:
            result += character;
        }
    }
    return result;
}

std::string name(std::string_view text) {
    const bool isBlank = text.find_first_not_of(" \t\r\n") == std::string_view::npos;
    return isBlank ? "<i>without a name</i>"
                   : "<bdi>" + escaped(shortened(std::string(text), kLongestName)) + "</bdi>";
}

std::string percent(double percentage) { return std::to_string(std::lround(percentage)) + "%"; }

Grade gradeOf(double percentage) {
    percentage = std::round(percentage); // as it is shown
    return percentage < kLowBelow ? Grade::Low : percentage < kGoodFrom ? Grade::Fair : Grade::Good;
}

std::string percentBar(double percentage) {
    static constexpr const char* kKinds[] = {"low", "fair", "good"};
    return std::string("<span class=\"bar\"><span class=\"") +
           kKinds[static_cast<size_t>(gradeOf(percentage))] + "\" style=\"width:" + width(percentage) +
           "\"></span></span><b class=\"n\">" + percent(percentage) + "</b>";
}

std::string sharesBar(std::initializer_list<Share> shares, const std::string& label) {
    size_t total = 0;
    for (const Share& share : shares)
        total += share.count;
    std::string result = "<span class=\"bar shares\" role=\"img\" aria-label=\"" + escaped(label) + "\">";
    for (const Share& share : shares) {
        if (share.count > 0)
            result += std::string("<span class=\"") + share.kind + "\" style=\"width:" +
                      width(100.0 * static_cast<double>(share.count) / static_cast<double>(total)) +
                      "\"></span>";
    }
    return result + "</span>";
}

std::string cell(std::string_view title, const std::string& content, const char* kind) {
    return "<td data-t=\"" + escaped(title) + "\"" + (*kind ? " class=\"" + std::string(kind) + "\"" : "") +
           ">" + content + "</td>";
}

} // namespace norvakavlor::kavlor
