#pragma once

#include <chrono>
#include <cstddef>
#include <norvakavlor/text/error.h>
#include <string>
#include <string_view>

namespace norvakavlor {

/// A location as people may see it: of an address the user and the values of its query are left out.
std::string shownLocation(std::string_view location);

/// How many documents a listing or a summary took, of those that it found.
///
///     LeftOut leftOut("attempts");
///     for (...)
///         leftOut.count(loaded);
///     leftOut.note();
class LeftOut {
public:
    explicit LeftOut(std::string_view what) : what_(what) {}
    /// Counts one document; why it was left out is the thread's last reason.
    void count(bool isTaken);
    /// "2 of 50 attempts left out: ..." is the thread's last reason, if any were.
    void note() const;

private:
    std::string_view what_;
    size_t found_ = 0;
    size_t left_ = 0;
    std::string firstReason_;
};

/// One operation on a document: what goes wrong in it has a place, is the thread's last reason and is told to
/// the log. So whatever may refuse belongs into `run`: a load has failed, too, when the document is there and
/// its reader gives False. An operation within one of the same name and location is a step of that one and
/// not told by itself.
///
///     return Operation("save", kind, location).run([&] { ...; return true; });
class Operation {
public:
    Operation(std::string_view name, std::string_view kind, std::string_view location);
    ~Operation();
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    /// Runs a step. An error that leaves it gets the document as its place. A result that is false or empty
    /// counts as a failure, whose reason the step has noted.
    template <class Step> auto run(Step step) {
        try {
            auto result = step();
            end(static_cast<bool>(result));
            return result;
        } catch (const Error& error) {
            throw failed(error);
        }
    }

private:
    void end(bool isSuccess) const noexcept;
    bool isStep() const;
    Error failed(const Error& error) const;

    std::string_view name_;
    std::string_view kind_;
    std::string location_;    ///< its own: a reader may change the one that it was given
    const Operation* around_; ///< the one that this one runs in, or null
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace norvakavlor
