#pragma once

#include <chrono>
#include <functional>
#include <string>

/// What the library does with documents, told to a host that asks for it. Nothing is told by default, and no
/// result ever depends on it. Neither keys nor passwords, nor their digests, nor the values of an address's
/// query are told.
namespace norvakavlor {

/// One operation, when it has ended.
struct LogEntry {
    std::string operation; ///< "load", "save", "delete", "list", "change", "log in", "submit", "launch"
    std::string kind;      ///< of the document: "Exam"
    std::string location;
    bool isSuccess = false;
    std::string reason; ///< why not
    std::chrono::milliseconds duration{};
};

using LogSink = std::function<void(const LogEntry&)>;

/// Installs a host's log for the whole process (an empty one ends it) and gives back the one before. It may
/// be called on several threads at once, must not raise and must not call the library.
[[gnu::visibility("default")]] LogSink setLog(LogSink sink);

/// Appends entries to a file, a line each: time, process, operation, kind, location, duration, result. ""
/// ends it. A file that cannot be written is passed over. The environment variable NORVAKAVLOR_LOG names the
/// one that a process begins with.
[[gnu::visibility("default")]] void setLogFile(const std::string& path);
[[gnu::visibility("default")]] std::string logFile();

/// Is anybody told?
bool isLogging();
void tellLog(const LogEntry& entry) noexcept;

} // namespace norvakavlor
