#pragma once

#include <string>
#include <tests/support/fixtures.h>

namespace norvakavlor::testing {

/// What an act gives as text, or "error 13" for what it raises: one column of a table for both.
template <class Act> std::string outcome(Act act) {
    std::string result;
    const int32_t error = errorNumber([&] { result = act(); });
    return error == 0 ? result : "error " + std::to_string(error);
}

} // namespace norvakavlor::testing
