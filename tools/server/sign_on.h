#pragma once

#include <deque>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

/// The server's side of the handshake.
namespace norvakavlor::server {

/// Gives out keys and checks clients' values for them. A validated key is good until the server ends; of very
/// many keys the oldest are forgotten. Several requests may use it at once.
class SignOn {
public:
    /// A new key that nobody can guess.
    std::string issueKey();

    /// Does the value fit an issued key? If so, the pair opens the documents from now on.
    bool validate(const std::string& key, const std::string& value);

    /// Was this pair validated before?
    bool isOpen(const std::string& key, const std::string& value) const;

private:
    mutable std::mutex mutex_;
    std::deque<std::string> issued_; ///< oldest first
    std::set<std::string, std::less<>> validated_;
};

} // namespace norvakavlor::server
