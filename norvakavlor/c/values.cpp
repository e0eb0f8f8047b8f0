#include <norvakavlor/c/values.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <norvakavlor/c/tables.h>
#include <norvakavlor/text/error.h>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace norvakavlor {
namespace {

std::string_view textOf(const nk_value& value) {
    return value.text ? std::string_view(value.text, value.length) : std::string_view();
}

std::span<const nk_value> elementsOf(const nk_value& value) {
    return {value.elements, value.elements ? value.length : 0};
}

Value arrayFrom(const nk_value& value) {
    const std::span<const nk_value> elements = elementsOf(value);
    constexpr auto kMax = static_cast<size_t>(std::numeric_limits<int32_t>::max());
    // Bounds are 32-bit numbers.
    if (elements.size() > kMax - static_cast<size_t>(std::max(value.integer, 0)))
        throw runtimeError(RuntimeError::Overflow);
    auto array = std::make_shared<Array>();
    array->lowerBound = value.integer;
    array->elements.reserve(elements.size());
    for (const nk_value& element : elements)
        array->elements.push_back(fromClient(element));
    return array;
}

/// The caller's to clear. What it holds is complete or nothing: it raises before it takes anything.
nk_value textFor(std::string_view text, int32_t kind) {
    nk_value value{};
    char* copy = new char[text.size() + 1];
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    value.kind = kind;
    value.text = copy;
    value.length = text.size();
    return value;
}

nk_value numberFor(double number, int32_t kind) {
    nk_value value{};
    value.kind = kind;
    value.number = number;
    return value;
}

nk_value integerFor(int32_t number, int32_t kind = NK_INTEGER) {
    nk_value value{};
    value.kind = kind;
    value.integer = number;
    return value;
}

nk_value arrayFor(const Array& array, const std::shared_ptr<ObjectGroup>& group) {
    ClientValues elements;
    for (const Value& element : array.elements)
        elements.add(element, group);
    nk_value value = integerFor(array.lowerBound, NK_ARRAY);
    value.length = array.elements.size();
    value.elements = elements.handOver();
    return value;
}

nk_value forClient(const Value& value, const std::shared_ptr<ObjectGroup>& group) {
    return std::visit(
        [&](const auto& held) -> nk_value {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::monostate>) {
                return {};
            } else if constexpr (std::is_same_v<Held, Value::Null>) {
                return integerFor(0, NK_NULL);
            } else if constexpr (std::is_same_v<Held, bool>) {
                return integerFor(held ? 1 : 0, NK_BOOLEAN);
            } else if constexpr (std::is_same_v<Held, int16_t> || std::is_same_v<Held, int32_t>) {
                return integerFor(held);
            } else if constexpr (std::is_same_v<Held, double>) {
                return numberFor(held, NK_NUMBER);
            } else if constexpr (std::is_same_v<Held, Date>) {
                return numberFor(held.days, NK_DATE);
            } else if constexpr (std::is_same_v<Held, CompactText>) {
                return textFor(held, NK_TEXT);
            } else if constexpr (std::is_same_v<Held, Ref<Object>>) {
                nk_value object = integerFor(held ? classNumber(&held->dynamicClass()) : -1, NK_OBJECT);
                object.object = held ? newHandle(held, group) : nullptr;
                return object;
            } else if constexpr (std::is_same_v<Held, std::shared_ptr<Array>>) {
                return arrayFor(*held, group);
            } else {
                const ExactNumber& exact = held;
                nk_value decimal = textFor(exact.text, NK_DECIMAL);
                decimal.number = exact.number;
                return decimal;
            }
        },
        value.storage());
}

} // namespace

void collectHandles(const nk_value* values, size_t count, std::vector<nk_object*>& handles) {
    for (const nk_value& value : std::span(values, values ? count : 0)) {
        if (value.kind == NK_OBJECT && value.object)
            handles.push_back(value.object);
        if (value.kind == NK_ARRAY)
            collectHandles(value.elements, value.length, handles);
    }
}

Value fromClient(const nk_value& value) {
    switch (value.kind) {
    case NK_EMPTY:
    case NK_MISSING:
        return {};
    case NK_NULL:
        return Value::Null();
    case NK_BOOLEAN:
        return value.integer != 0;
    case NK_INTEGER:
        return value.integer;
    case NK_NUMBER:
        return value.number;
    case NK_DATE:
        return Date{value.number};
    case NK_TEXT:
        return textOf(value);
    case NK_OBJECT:
        return value.object ? Value(value.object->object) : Value::nothing();
    case NK_ARRAY:
        return arrayFrom(value);
    case NK_DECIMAL:
        return ExactNumber{ExactNumber::Type::Decimal, value.number, std::string(textOf(value))};
    default:
        throw runtimeError(RuntimeError::InvalidProcedureCall);
    }
}

ClientValues::~ClientValues() {
    for (nk_value& value : values_)
        nk_value_clear(&value);
}

void ClientValues::add(const Value& value, const std::shared_ptr<ObjectGroup>& group) {
    values_.emplace_back(); // room first: what is converted must not be lost
    values_.back() = forClient(value, group);
}

nk_value* ClientValues::handOver() {
    if (values_.empty())
        return nullptr;
    auto* room = new nk_value[values_.size()];
    handOver(room);
    return room;
}

void ClientValues::handOver(nk_value* room) {
    std::copy(values_.begin(), values_.end(), room);
    values_.clear();
}

} // namespace norvakavlor

void nk_value_clear(nk_value* value) {
    if (!value)
        return;
    nk_object_release(value->object);
    for (nk_value& element : std::span(value->elements, value->elements ? value->length : 0))
        nk_value_clear(&element);
    delete[] value->elements;
    delete[] value->text;
    *value = {};
}
