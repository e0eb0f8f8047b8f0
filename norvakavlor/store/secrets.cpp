#include <norvakavlor/store/secrets.h>

#include <algorithm>
#include <norvakavlor/store/gradebook.h>
#include <norvakavlor/store/login_globals.h>
#include <string_view>
#include <vector>

namespace norvakavlor {
namespace {

/// A text that is not shown, but for what stands before it.
struct Secret {
    std::string_view text;
    size_t shown = 0;
};

std::vector<Secret> secretsOf(std::string_view validationString) {
    std::vector<Secret> secrets;
    secrets.reserve(kGradebookKeys.size());
    for (const std::string_view key : kGradebookKeys)
        secrets.push_back({key});
    // A pair as it stands in a request: a value alone may be a word that means nothing.
    while (!validationString.empty()) {
        const std::string_view pair = validationString.substr(0, validationString.find('&'));
        const size_t value = pair.find('=') + 1;
        if (value > 0 && value < pair.size())
            secrets.push_back({pair, value});
        validationString.remove_prefix(std::min(pair.size() + 1, validationString.size()));
    }
    return secrets;
}

constexpr std::string_view kDigestDigits = "0123456789abcdef";

bool isDigestDigit(char character) { return kDigestDigits.find(character) != std::string_view::npos; }

} // namespace

std::string withoutSecrets(std::string_view text) {
    constexpr std::string_view kHidden = "...";
    constexpr size_t kDigestLength = 32;
    const std::string validationString = LoginGlobals::GetValidationString();
    const std::vector<Secret> secrets = secretsOf(validationString);
    std::string shown;
    shown.reserve(text.size());
    // In one pass: a server may repeat a secret a million times.
    for (size_t at = 0, taken = 1; at < text.size(); at += taken) {
        const std::string_view rest = text.substr(at);
        const auto secret =
            std::ranges::find_if(secrets, [&](const Secret& one) { return rest.starts_with(one.text); });
        const bool beginsNumber = isDigestDigit(text[at]) && (at == 0 || !isDigestDigit(text[at - 1]));
        if (secret != secrets.end()) {
            shown.append(rest.substr(0, secret->shown)).append(kHidden);
            taken = secret->text.size();
        } else if (beginsNumber &&
                   std::min(rest.find_first_not_of(kDigestDigits), rest.size()) == kDigestLength) {
            shown += kHidden;
            taken = kDigestLength;
        } else {
            shown += text[at];
            taken = 1;
        }
    }
    return shown;
}

} // namespace norvakavlor
