#pragma once

#include "options.h"
#include "service.h"

#include <memory>
#include <string>

/// Carries requests over HTTP.
namespace norvakavlor::server {

/// Answers requests while it lives, each on its own thread, so a slow client does not hold up others.
class HttpFront {
public:
    /// Raises 5 if the address or port is not free.
    HttpFront(const Options& options, Service& service);
    HttpFront(const HttpFront&) = delete;
    HttpFront& operator=(const HttpFront&) = delete;
    /// Finishes what the service is doing, then closes every connection.
    ~HttpFront();

    /// "http://127.0.0.1:8080", without a "/" at its end.
    const std::string& address() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace norvakavlor::server
