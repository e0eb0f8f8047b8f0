#include <norvakavlor/runtime/value.h>

#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>

namespace norvakavlor {
namespace {

[[noreturn]] void refuseConversion() { throw runtimeError(RuntimeError::TypeMismatch); }

/// One function object out of several lambdas, for std::visit.
template <class... Functions> struct Overloads : Functions... { using Functions::operator()...; };
template <class... Functions> Overloads(Functions...) -> Overloads<Functions...>;

/// Every conversion to a number: by way of a double, which is as exact as any number wanted here.
template <class Number, class FromText>
Number toNumber(const Value::Storage& storage, Number (*fromDouble)(double), FromText fromText) {
    return std::visit(Overloads{[](std::monostate) { return Number{}; },
                                [&](bool value) { return fromDouble(value ? -1 : 0); },
                                [&](int16_t value) { return fromDouble(value); },
                                [&](int32_t value) { return fromDouble(value); },
                                [&](double value) { return fromDouble(value); },
                                [&](Date value) { return fromDouble(value.days); },
                                [&](const SharedNumber& shared) {
                                    const ExactNumber& value = shared;
                                    return fromDouble(value.number);
                                },
                                [&](const CompactText& value) { return fromText(value.view()); },
                                [](const auto&) -> Number { refuseConversion(); }},
                      storage);
}

} // namespace

bool Value::isAbsent() const {
    const auto* object = as<Ref<Object>>();
    return isEmpty() || isNull() || (object && !*object);
}

std::string Value::toText() const {
    return std::visit(Overloads{[](std::monostate) { return std::string(); },
                                [](bool value) { return norvakavlor::toText(value); },
                                [](int16_t value) { return std::to_string(value); },
                                [](int32_t value) { return std::to_string(value); },
                                [](double value) { return norvakavlor::toText(value); },
                                [](Date value) { return norvakavlor::toText(value); },
                                [](const CompactText& value) { return std::string(value.view()); },
                                [](const SharedNumber& shared) {
                                    const ExactNumber& value = shared;
                                    return value.text;
                                },
                                [](const auto&) -> std::string { refuseConversion(); }},
                      storage_);
}

bool Value::toBoolean() const {
    return toNumber<bool>(
        storage_, [](double number) { return number != 0; },
        [](std::string_view text) { return norvakavlor::toBoolean(text); });
}

int16_t Value::toInt16() const {
    return toNumber<int16_t>(storage_, norvakavlor::toInt16,
                             [](std::string_view text) { return norvakavlor::toInt16(text); });
}

int32_t Value::toInt32() const {
    return toNumber<int32_t>(storage_, norvakavlor::toInt32,
                             [](std::string_view text) { return norvakavlor::toInt32(text); });
}

double Value::toDouble() const {
    return toNumber<double>(
        storage_, [](double number) { return number; },
        [](std::string_view text) { return norvakavlor::toDouble(text); });
}

Date Value::toDate() const {
    return toNumber<Date>(
        storage_, [](double number) { return norvakavlor::toDate(number); },
        [](std::string_view text) { return norvakavlor::toDate(text); });
}

Ref<Object> Value::toObject() const {
    if (const auto* object = as<Ref<Object>>())
        return *object;
    refuseConversion();
}

Value& Array::at(int32_t index) {
    if (index < lowerBound || index > upperBound())
        throw runtimeError(RuntimeError::SubscriptOutOfRange);
    return elements[static_cast<size_t>(index) - static_cast<size_t>(lowerBound)];
}

} // namespace norvakavlor
