#include <norvakavlor/runtime/log.h>

#include <cstdlib>
#include <mutex>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/runtime/log_back_end.h>
#include <norvakavlor/text/convert.h>
#include <utility>

namespace norvakavlor {
namespace {

struct Log {
    std::mutex mutex;
    LogSink sink;
    std::string file = configuredFile();

    static std::string configuredFile() {
        const char* const path = std::getenv("NORVAKAVLOR_LOG");
        return path ? path : "";
    }
};

Log& log() {
    static Log only;
    return only;
}

/// One entry, one line: what a text holds in line breaks is written as blanks.
std::string lineOf(const LogEntry& entry) {
    std::string line = toText(now()) + " [" + std::to_string(processId()) + "] " + entry.operation + " " +
                       entry.kind + " " + entry.location + " " + std::to_string(entry.duration.count()) +
                       " ms: " + (entry.isSuccess ? "done" : "not done") +
                       (entry.reason.empty() ? "" : ": " + entry.reason);
    for (char& character : line) {
        if (static_cast<unsigned char>(character) < 0x20)
            character = ' ';
    }
    return line + "\n";
}

} // namespace

LogSink setLog(LogSink sink) {
    const std::lock_guard lock(log().mutex);
    return std::exchange(log().sink, std::move(sink));
}

void setLogFile(const std::string& path) {
    const std::lock_guard lock(log().mutex);
    log().file = path;
}

std::string logFile() {
    const std::lock_guard lock(log().mutex);
    return log().file;
}

bool isLogging() {
    const std::lock_guard lock(log().mutex);
    return log().sink || !log().file.empty();
}

void tellLog(const LogEntry& entry) noexcept {
    try {
        std::string file;
        LogSink sink;
        {
            const std::lock_guard lock(log().mutex);
            file = log().file;
            sink = log().sink;
        }
        if (sink)
            sink(entry);
        if (!file.empty())
            appendToFile(file, lineOf(entry));
    } catch (const std::exception&) {
        // A log that fails changes no result.
    }
}

} // namespace norvakavlor
