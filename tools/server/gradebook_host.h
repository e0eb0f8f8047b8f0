#pragma once

#include "options.h"

#include <mutex>
#include <string>
#include <string_view>

/// Stands for the gradebook's submission hosts: /gradebook and /gradebook-backup.
namespace norvakavlor::server {

class GradebookHost {
public:
    /// `folder` is made with the first post.
    GradebookHost(std::string folder, const Options& options);

    static bool isHost(std::string_view directory, std::string_view name);

    /// Keeps a post and gives the answer. The body goes byte for byte to 0001.txt and so on, in the order of
    /// arrival; posts.txt gets a line with number, target, content type and size of each. Raises what writing
    /// a file raises; the post is not answered with "success" then.
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
