#pragma once

#include <cstdint>
#include <memory>
#include <norvakavlor/runtime/object.h>
#include <norvakavlor/text/compact_text.h>
#include <norvakavlor/text/date.h>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace norvakavlor {

class [[gnu::visibility("default")]] Value;
struct [[gnu::visibility("default")]] Array;

struct Array;

/// A client's number whose digits a double would not give as text: a single (as a double, 85.7 is
/// 85.6999969482422), or a currency, decimal or 64-bit integer of more than 15 digits.
struct ExactNumber {
    enum class Type { Single, Decimal };

    Type type = Type::Decimal; ///< currencies and 64-bit integers are decimals
    double number = 0;         ///< the nearest double
    std::string text;

    friend bool operator==(const ExactNumber&, const ExactNumber&) = default;
};

/// An exact number out of line: few values are one, and it would make all others half as large again.
class SharedNumber {
public:
    explicit SharedNumber(ExactNumber number)
        : number_(std::make_shared<const ExactNumber>(std::move(number))) {}
    operator const ExactNumber&() const { return *number_; }
    friend bool operator==(const SharedNumber& left, const SharedNumber& right) {
        return *left.number_ == *right.number_;
    }

private:
    std::shared_ptr<const ExactNumber> number_;
};

/// What a late-bound client passes in and gets back. A missing argument is Empty, Nothing is an object
/// that is a null Ref. Copies of a Value share its object and its array.
class Value {
public:
    struct Null {
        friend bool operator==(Null, Null) = default;
    };
    using Storage = std::variant<std::monostate, Null, bool, int16_t, int32_t, double, Date, CompactText,
                                 Ref<Object>, std::shared_ptr<Array>, SharedNumber>;

    Value() = default;
    Value(const Value&) = default;
    Value(Value&&) noexcept = default;
    ~Value() = default;
    /// The former content is released last, when the value holds the new one: releasing may run a client's
    /// code, which may look here.
    Value& operator=(Value other) noexcept {
        storage_.swap(other.storage_);
        return *this;
    }
    Value(Null null) : storage_(null) {}
    Value(bool value) : storage_(value) {}
    Value(int16_t value) : storage_(value) {}
    Value(int32_t value) : storage_(value) {}
    Value(double value) : storage_(value) {}
    Value(Date value) : storage_(value) {}
    Value(const std::string& value) : storage_(CompactText(value)) {}
    Value(std::string_view value) : storage_(CompactText(value)) {}
    Value(const char* value) : storage_(CompactText(value)) {}
    template <class T> Value(T* pointer) = delete; // it would become a boolean; an object travels in a Ref
    template <class T> Value(const Ref<T>& object) : storage_(Ref<Object>(object)) {}
    template <class T> Value(const NotNull<T>& object) : storage_(Ref<Object>(object.get())) {}
    Value(std::shared_ptr<Array> array) : storage_(std::move(array)) {}
    Value(ExactNumber number) : storage_(SharedNumber(std::move(number))) {}

    static Value nothing() { return Ref<Object>(); }

    const Storage& storage() const { return storage_; }
    template <class T> const T* as() const {
        if constexpr (std::is_same_v<T, ExactNumber>) {
            const auto* shared = std::get_if<SharedNumber>(&storage_);
            return shared ? &static_cast<const ExactNumber&>(*shared) : nullptr;
        } else {
            return std::get_if<T>(&storage_);
        }
    }

    bool isEmpty() const { return as<std::monostate>() != nullptr; }
    bool isNull() const { return as<Null>() != nullptr; }
    bool isObject() const { return as<Ref<Object>>() != nullptr; }
    /// Empty, Null and Nothing alike: what a caller passes for "no collection" and the like.
    bool isAbsent() const;

    /// The value converted as a script's assignment would. Each raises 13 where there is no conversion (also
    /// for Null) and 6 beyond the range.
    std::string toText() const;
    bool toBoolean() const;
    int16_t toInt16() const;
    int32_t toInt32() const;
    double toDouble() const;
    Date toDate() const;
    /// The object; Nothing gives a null Ref. Raises 13 for anything else.
    Ref<Object> toObject() const;

private:
    Storage storage_;
};

/// A one-dimensional array. Whoever gets it in a Value may change its elements in place.
struct Array {
    int32_t lowerBound = 0;
    std::vector<Value> elements;

    int32_t upperBound() const { return lowerBound + static_cast<int32_t>(elements.size()) - 1; }
    /// Raises 9 outside the bounds.
    Value& at(int32_t index);
};

} // namespace norvakavlor
