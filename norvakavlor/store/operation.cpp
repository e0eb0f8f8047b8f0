#include <norvakavlor/store/operation.h>

#include <algorithm>
#include <new>
#include <norvakavlor/runtime/log.h>
#include <norvakavlor/runtime/reason.h>
#include <norvakavlor/store/location.h>
#include <utility>

namespace norvakavlor {
namespace {

thread_local const Operation* innermost = nullptr;

} // namespace

std::string shownLocation(std::string_view location) {
    if (location.find("://") == std::string_view::npos)
        return std::string(location);
    std::string shown;
    const size_t host = location.find("://") + 3;
    const size_t path = std::min(location.find_first_of("/?", host), location.size());
    const size_t user = location.substr(0, path).rfind('@');
    shown.append(location.substr(0, host));
    bool inValue = false;
    for (const char character :
         location.substr(user == std::string_view::npos || user < host ? host : user + 1)) {
        // A configured directory has its query before its last "/", which ends it.
        if (inValue && (character == '&' || character == '/'))
            inValue = false;
        if (!inValue)
            shown += character;
        if (character == '=' && shown.find('?') != std::string::npos && !inValue) {
            inValue = true;
            shown += "...";
        }
    }
    return shown;
}

void LeftOut::count(bool isTaken) {
    ++found_;
    if (!isTaken && left_++ == 0)
        firstReason_ = lastReason();
}

void LeftOut::note() const {
    if (left_ > 0)
        noteReason(std::to_string(left_) + " of " + std::to_string(found_) + " " + std::string(what_) +
                   " left out: " + firstReason_);
}

Operation::Operation(std::string_view name, std::string_view kind, std::string_view location)
    : name_(name), kind_(kind.substr(0, kind.find('&'))), location_(location),
      around_(std::exchange(innermost, this)) {}

Operation::~Operation() { innermost = around_; }

bool Operation::isStep() const {
    for (const Operation* other = around_; other; other = other->around_) {
        if (other->name_ == name_ && other->location_ == location_)
            return true;
    }
    return false;
}

/// Without memory nothing is told: what is done is done.
void Operation::end(bool isSuccess) const noexcept try {
    if (!isLogging() || isStep())
        return;
    const auto duration = std::chrono::steady_clock::now() - start_;
    tellLog({.operation = std::string(name_),
             .kind = std::string(kind_),
             .location = shownLocation(location_),
             .isSuccess = isSuccess,
             .reason = isSuccess ? std::string() : lastReason(),
             .duration = std::chrono::duration_cast<std::chrono::milliseconds>(duration)});
} catch (const std::bad_alloc&) {
}

Error Operation::failed(const Error& error) const {
    ErrorPlace place = error.place();
    if (place.document.empty())
        place.document = shownLocation(location_);
    const Error placed = error.at(std::move(place));
    noteReason(placed.reason());
    end(false);
    return placed;
}

} // namespace norvakavlor
