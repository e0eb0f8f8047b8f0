#pragma once

#include "options.h"
#include "service.h"

#include <memory>
#include <string>

/// Carries requests over HTTP.
namespace norvakavlor::server {

class HttpFront {
public:
    /// Listens at once. Raises 5 when the address or port cannot be had.
    HttpFront(const Options& options, Service& service);
    HttpFront(const HttpFront&) = delete;
    HttpFront& operator=(const HttpFront&) = delete;
    ~HttpFront();

    /// "http://127.0.0.1:8080", without a "/" at its end.
    const std::string& address() const { return address_; }

    /// Answers requests until stop() is called.
    void run();
    /// From another thread. Requests that are under way are answered.
    void stop();

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
    std::string address_;
};

} // namespace norvakavlor::server
