#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Diagnostics;

/// Says why calls failed, to programs that get no more than a False.
class Diagnostics final : public Object {
public:
    /// Why the last call on this thread failed, was refused or left something out, whichever object it was
    /// made on; "" until one did.
    std::string LastReason() const;

    /// The file to which every operation is logged, a line each; "" for none. It is the whole process's, and
    /// begins as what NORVAKAVLOR_LOG names.
    std::string LogFile() const;
    void SetLogFile(const std::string& path) const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
