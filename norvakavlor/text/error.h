#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <vector>

namespace norvakavlor {

class [[gnu::visibility("default")]] Error;
struct [[gnu::visibility("default")]] ErrorPlace;

/// Where in a document the fault is that an error tells of. What is not known is empty or 0.
struct ErrorPlace {
    std::string document; ///< its location
    size_t line = 0;      ///< from 1
    size_t column = 0;    ///< from 1, in characters
    std::string member;   ///< the element: "questionPool/question[3]/objectiveRef"
    std::vector<size_t>
        steps; ///< the same as positions, from 0: the element child of the root, of that, and so on

    bool isKnown() const { return !document.empty() || !member.empty(); }
    /// "q.xml:6:63", without a line "q.xml: questionPool/question[3]".
    std::string text() const;
};

/// A raised error as every client sees it: a number, the class and method that raised it, an English text;
/// and its place, if it was raised while a document was read.
class Error final : public std::exception {
public:
    Error(int32_t number, std::string source, std::string description);

    int32_t number() const { return number_; }
    const std::string& source() const { return source_; }
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }
    const ErrorPlace& place() const { return place_; }
    /// The same error at a place.
    Error at(ErrorPlace place) const;
    /// The description, with the place before it.
    std::string reason() const;

private:
    int32_t number_;
    std::string source_;
    std::string description_;
    ErrorPlace place_;
};

/// The runtime's own errors, with the numbers that script and Basic programmers know.
enum class RuntimeError : int32_t {
    InvalidProcedureCall = 5, ///< also a failed lookup by key
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    DivisionByZero = 11,
    TypeMismatch = 13,
    InternalError = 51, ///< a fault of the library itself
    FileNotFound = 53,
    DeviceError = 57, ///< reading or writing failed for another reason
    DiskFull = 61,
    PermissionDenied = 70,
    PathNotFound = 76,
    ObjectNotSet = 91,
    CannotCreateObject = 429,
    MemberNotFound = 438,
    NamedArgumentNotFound = 448,
    ArgumentNotOptional = 449,
    WrongNumberOfArguments = 450,
    KeyAlreadyAssociated = 457,
    ElementNotFound = 32811,
};

/// 0x80040000 + code: the number of the classes' own errors.
[[gnu::visibility("default")]] Error objectError(int code, std::string source, std::string description);

/// A runtime error with its usual text; the source is the library's name.
[[gnu::visibility("default")]] Error runtimeError(RuntimeError error);

/// A runtime error with its own text, if the usual one would leave readers guessing.
[[gnu::visibility("default")]] Error runtimeError(RuntimeError error, std::string description);

/// The usual text of a runtime error.
[[gnu::visibility("default")]] const char* usualText(RuntimeError error);

/// Running out of memory says nothing about a document or a number, so no step may ignore it. It is
/// std::bad_alloc, or error 7 if the system or a client's object reports it.
inline bool isOutOfMemory(const Error& error) {
    return error.number() == static_cast<int32_t>(RuntimeError::OutOfMemory);
}

/// Runs a step whose failure changes nothing else; true if it succeeded:
/// `ignoringErrors([&] { question->Correct = toInt16(text); })` leaves Correct as it was. Still raises when
/// memory runs out.
template <class Step> bool ignoringErrors(Step&& step) {
    try {
        step();
        return true;
    } catch (const Error& error) {
        if (isOutOfMemory(error))
            throw;
        return false;
    }
}

} // namespace norvakavlor
