#pragma once

#include "options.h"
#include "service.h"

#include <memory>
#include <string>

/// Carries requests over HTTP.
namespace norvakavlor::server {

/// Answers requests while it lives, each on a thread of its own, so that a slow client stops no other one.
class HttpFront {
public:
    /// Raises 5 when the address or port cannot be had.
    HttpFront(const Options& options, Service& service);
    HttpFront(const HttpFront&) = delete;
    HttpFront& operator=(const HttpFront&) = delete;
    /// Closes every connection; what the service is doing is finished first.
    ~HttpFront();

    /// "http://127.0.0.1:8080", without a "/" at its end.
    const std::string& address() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace norvakavlor::server
