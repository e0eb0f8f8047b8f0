#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

/// Processes that do an act over and over, and what they reported.
namespace norvakavlor::torture {

class Worker {
public:
    /// Starts `command ACT FOLDER PREFIX COUNT`.
    Worker(const std::vector<std::string>& command, std::string_view act, const std::string& folder,
           const std::string& prefix, int count);
    /// Starts a command that says something of its own when it has begun.
    explicit Worker(std::vector<std::string> command);
    Worker(Worker&& other) noexcept;
    Worker& operator=(Worker&& other) noexcept;
    ~Worker();

    pid_t process() const { return process_; }
    /// Waits until it has begun, at most a minute; False when it did not.
    bool begins();
    /// The first line that it writes, waiting for it as long; "" when none comes.
    std::string firstLine();
    void kill();
    /// Waits until it has ended by itself, so many seconds at most; False when it did not, or ended badly.
    bool ends(int seconds);
    /// What it reported as stored up to now, in order.
    std::vector<std::string> reported();

private:
    void listen();

    pid_t process_ = -1;
    int output_ = -1;
    std::string said_;
};

} // namespace norvakavlor::torture
