#include <norvakavlor/text/error.h>

#include <utility>

namespace norvakavlor {

Error::Error(int32_t number, std::string source, std::string description)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {}

Error Error::at(ErrorPlace place) const {
    Error error(number_, source_, description_);
    error.place_ = std::move(place);
    return error;
}

std::string Error::reason() const {
    return place_.isKnown() ? place_.text() + ": " + description_ : description_;
}

std::string ErrorPlace::text() const {
    if (line != 0)
        return document + ":" + std::to_string(line) + ":" + std::to_string(column);
    if (document.empty() || member.empty())
        return document + member;
    return document + ": " + member;
}

Error objectError(int code, std::string source, std::string description) {
    constexpr uint32_t kObjectErrorBase = 0x80040000;
    const auto number = static_cast<int32_t>(kObjectErrorBase + static_cast<uint32_t>(code));
    return {number, std::move(source), std::move(description)};
}

Error runtimeError(RuntimeError error) { return runtimeError(error, usualText(error)); }

Error runtimeError(RuntimeError error, std::string description) {
    return {static_cast<int32_t>(error), "NorvaKavlor", std::move(description)};
}

const char* usualText(RuntimeError error) {
    switch (error) {
    case RuntimeError::InvalidProcedureCall:
        return "Invalid procedure call or argument";
    case RuntimeError::Overflow:
        return "Overflow";
    case RuntimeError::OutOfMemory:
        return "Out of memory";
    case RuntimeError::SubscriptOutOfRange:
        return "Subscript out of range";
    case RuntimeError::DivisionByZero:
        return "Division by zero";
    case RuntimeError::TypeMismatch:
        return "Type mismatch";
    case RuntimeError::InternalError:
        return "Internal error";
    case RuntimeError::FileNotFound:
        return "File not found";
    case RuntimeError::DeviceError:
        return "Device I/O error";
    case RuntimeError::DiskFull:
        return "Disk full";
    case RuntimeError::PermissionDenied:
        return "Permission denied";
    case RuntimeError::PathNotFound:
        return "Path not found";
    case RuntimeError::ObjectNotSet:
        return "Object variable or With block variable not set";
    case RuntimeError::CannotCreateObject:
        return "ActiveX component can't create object";
    case RuntimeError::MemberNotFound:
        return "Object doesn't support this property or method";
    case RuntimeError::NamedArgumentNotFound:
        return "Named argument not found";
    case RuntimeError::ArgumentNotOptional:
        return "Argument not optional";
    case RuntimeError::WrongNumberOfArguments:
        return "Wrong number of arguments or invalid property assignment";
    case RuntimeError::KeyAlreadyAssociated:
        return "This key is already associated with an element of this collection";
    case RuntimeError::ElementNotFound:
        return "Element not found";
    }
    return "Application-defined or object-defined error";
}

} // namespace norvakavlor
