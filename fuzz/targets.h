#pragma once

#include <span>
#include <string_view>

/// What is fed with arbitrary bytes. A target breaks off the process when a promise does not hold.
namespace norvakavlor::fuzz {

struct Target {
    std::string_view name;
    std::string_view seeds; ///< folder of sample documents below examples/; "": those in fuzz/seeds alone
    void (*feed)(std::string_view name, std::string_view bytes);
};

/// One for each reader of documents (named as its class) and one for each other reader.
std::span<const Target> targets();

/// Null when there is none of this name.
const Target* findTarget(std::string_view name);

/// To be called once before the first input: a folder of its own to work in, no messages, short waits.
void prepare();

/// The reply that every request gets, in the place of what a network would bring.
void setReply(int status, std::string_view contentType, std::string_view body);

} // namespace norvakavlor::fuzz
