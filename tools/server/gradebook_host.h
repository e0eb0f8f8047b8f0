#pragma once

#include "options.h"

#include <mutex>
#include <string>
#include <string_view>

/// Plays the gradebook's submission hosts: /gradebook and /gradebook-backup.
namespace norvakavlor::server {

class GradebookHost {
public:
    /// The first post makes `folder`.
    GradebookHost(std::string folder, const Options& options);

    static bool isHost(std::string_view directory, std::string_view name);

    /// Stores a post and returns the answer. The bodies go byte for byte to 0001.txt and so on, as they
    /// arrive; posts.txt gets a line with each one's number, target, content type and size. Raises what
    /// writing a file raises; the answer is not "success" then.
    std::string take(std::string_view target, std::string_view contentType, std::string_view body);

private:
    int nextNumber() const;

    std::string folder_; ///< with "/" at its end
    std::string reply_;
    int acceptFrom_;
    int posts_ = 0; ///< since the server started
    std::mutex mutex_;
};

} // namespace norvakavlor::server
