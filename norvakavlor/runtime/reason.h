#pragma once

#include <string>

namespace norvakavlor {

/// Why the last call on this thread failed, was refused or left something out: "students.xml: there is no
/// such file", "q.xml:6:63: Invalid Objective ID". A call that succeeds leaves it; "" until one does not.
[[gnu::visibility("default")]] std::string lastReason();

/// Sets the thread's last reason. Raises nothing: without memory for it the former one stays.
void noteReason(const std::string& reason) noexcept;

} // namespace norvakavlor
