#include "sign_on.h"

#include <algorithm>
#include <norvakavlor/results/security.h>
#include <random>

namespace norvakavlor::server {
namespace {

constexpr size_t kRememberedKeys = 10'000;
constexpr size_t kKeyDigits = 32;

bool fits(const std::string& key, const std::string& value) {
    return key.size() == kKeyDigits && New<Security>()->ValidateLoginKey(key, value);
}

} // namespace

std::string SignOn::issueKey() {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::random_device random;
    std::string key;
    for (size_t i = 0; i < kKeyDigits; ++i)
        key += kDigits[random() & 0xF];
    const std::lock_guard lock(mutex_);
    issued_.push_back(key);
    if (issued_.size() > kRememberedKeys) {
        validated_.erase(issued_.front());
        issued_.pop_front();
    }
    return key;
}

bool SignOn::validate(const std::string& key, const std::string& value) {
    const std::lock_guard lock(mutex_);
    const bool valid = fits(key, value) && std::ranges::find(issued_, key) != issued_.end();
    if (valid)
        validated_.insert(key);
    return valid;
}

bool SignOn::isOpen(const std::string& key, const std::string& value) const {
    const std::lock_guard lock(mutex_);
    return validated_.contains(key) && fits(key, value);
}

} // namespace norvakavlor::server
