#include <norvakavlor/config/diagnostics.h>

#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/runtime/log.h>
#include <norvakavlor/runtime/reason.h>

namespace norvakavlor {

std::string Diagnostics::LastReason() const { return lastReason(); }
std::string Diagnostics::LogFile() const { return logFile(); }
void Diagnostics::SetLogFile(const std::string& path) const { setLogFile(path); }

const ClassInfo& Diagnostics::classInfo() {
    static const ClassInfo info =
        describe<Diagnostics>("Diagnostics", "Says why the last call failed or left something out.")
            .readOnly("LastReason", &Diagnostics::LastReason,
                      "Why the last call on this thread failed, was refused or left something out.")
            .property("LogFile", &Diagnostics::LogFile, &Diagnostics::SetLogFile,
                      "The file that every operation is logged to; \"\" for none.");
    return info;
}

} // namespace norvakavlor
