#pragma once

#include <functional>
#include <initializer_list>
#include <norvakavlor/runtime/class_info.h>
#include <norvakavlor/text/error.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

/// How a class writes its table, once, beside its definition:
///
///     const ClassInfo& Course::classInfo() {
///         static const ClassInfo info = describe<Course>("Course", "A taught offering with its sections.")
///             .property("ID", &Course::ID, "Key in Courses.")
///             .readOnly("Sections", &Course::Sections, "The sections, in document order.")
///             .method("AddSection", &Course::AddSection, {"sectionName"}, "Adds a section.")
///             .method("Load", &Course::Load, {"location", {"textBooks", optional}}, "Reads a document.")
///             .method("Check", &Course::Check, {byRefResult("errCode")}, "Is the course complete?");
///         return info;
///     }
///
/// The compiler reads the types off the members: text, numbers, dates, booleans, `Value`, `Ref<T>` (an object
/// that is kept, may be Nothing), `T*` (an object that is only used during the call; null when absent:
/// Nothing, Null, Empty, left out), `T&` (an object that must be there: 91 when it is not) and, for results
/// by reference, `int16_t&`, `int32_t&`, `std::string&`, `Value&`. Further types are taught by specialising
/// ArgumentTraits, as the XML tree does for its nodes.
namespace norvakavlor {

/// How one C++ parameter or result type travels in a Value. `type()` is what clients see; `Held` is what
/// stands on the stack during the call; `take` fills it and `give` hands it to the function.
template <class T> struct ArgumentTraits;

/// The same for a type that converts to and from a Value directly; the scalars share it.
template <class T, Type::Kind kKind, T (Value::*kConvert)() const> struct ScalarTraits {
    using Held = T;
    static Type type() { return {kKind, nullptr}; }
    static Held take(const Value& value) { return (value.*kConvert)(); }
    static T& give(Held& held) { return held; }
};

template <>
struct ArgumentTraits<std::string> : ScalarTraits<std::string, Type::Kind::Text, &Value::toText> {};
template <> struct ArgumentTraits<bool> : ScalarTraits<bool, Type::Kind::Boolean, &Value::toBoolean> {};
template <> struct ArgumentTraits<int16_t> : ScalarTraits<int16_t, Type::Kind::Int16, &Value::toInt16> {};
template <> struct ArgumentTraits<int32_t> : ScalarTraits<int32_t, Type::Kind::Int32, &Value::toInt32> {};
template <> struct ArgumentTraits<double> : ScalarTraits<double, Type::Kind::Double, &Value::toDouble> {};
template <> struct ArgumentTraits<Date> : ScalarTraits<Date, Type::Kind::Date, &Value::toDate> {};

template <> struct ArgumentTraits<std::string_view> {
    using Held = std::string;
    static Type type() { return {Type::Kind::Text, nullptr}; }
    static Held take(const Value& value) { return value.toText(); }
    static std::string_view give(const Held& held) { return held; }
};

/// A text that may be absent, which is not the same as an empty one.
template <> struct ArgumentTraits<std::optional<std::string>> {
    using Held = std::optional<std::string>;
    static Type type() { return {Type::Kind::Scalar, nullptr}; }
    static Held take(const Value& value) { return value.isAbsent() ? Held() : Held(value.toText()); }
    static Held& give(Held& held) { return held; }
};

template <> struct ArgumentTraits<Value> {
    using Held = Value;
    static Type type() { return {Type::Kind::Any, nullptr}; }
    static Held take(const Value& value) { return value; }
    static Value& give(Held& held) { return held; }
};

template <> struct ArgumentTraits<std::shared_ptr<Array>> {
    using Held = std::shared_ptr<Array>;
    static Type type() { return {Type::Kind::Array, nullptr}; }
    static Held take(const Value& value) {
        const auto* array = value.as<Held>();
        if (!array || !*array)
            throw runtimeError(RuntimeError::TypeMismatch);
        return *array;
    }
    static Held& give(Held& held) { return held; }
};

/// The object in a value as a T; null for Nothing. Raises 13 for an object of another class.
template <class T> Ref<T> objectOf(const Value& value) {
    const Ref<Object> object = value.toObject();
    if constexpr (std::is_same_v<T, Object>) {
        return object;
    } else {
        T* typed = dynamic_cast<T*>(object.get());
        if (object && !typed)
            throw runtimeError(RuntimeError::TypeMismatch);
        return Ref<T>(typed);
    }
}

template <class T> Type objectType() {
    if constexpr (std::is_same_v<T, Object>) {
        return {Type::Kind::Object, nullptr};
    } else {
        return {Type::Kind::Object, &T::classInfo};
    }
}

template <class T> struct ArgumentTraits<Ref<T>> {
    using Held = Ref<T>;
    static Type type() { return objectType<T>(); }
    static Held take(const Value& value) { return value.isEmpty() ? Held() : objectOf<T>(value); }
    static Held& give(Held& held) { return held; }
};

/// Nothing gives a new object.
template <class T> struct ArgumentTraits<NotNull<T>> : ArgumentTraits<Ref<T>> {
    using Held = NotNull<T>;
    static Held take(const Value& value) { return ArgumentTraits<Ref<T>>::take(value); }
    static Held& give(Held& held) { return held; }
};

template <class T>
requires std::is_base_of_v<Object, T>
struct ArgumentTraits<T*> {
    using Held = Ref<T>;
    static Type type() { return objectType<T>(); }
    static Held take(const Value& value) { return value.isAbsent() ? Held() : objectOf<T>(value); }
    static T* give(Held& held) { return held.get(); }
};

template <class T>
requires std::is_base_of_v<Object, T>
struct ArgumentTraits<T> {
    using Held = Ref<T>;
    static Type type() { return objectType<T>(); }
    static Held take(const Value& value) {
        Held held = value.isEmpty() ? Held() : objectOf<T>(value);
        if (!held)
            throw runtimeError(RuntimeError::ObjectNotSet);
        return held;
    }
    static T& give(Held& held) { return *held; }
};

/// Marks a parameter that may be left out: `{"textBooks", optional}`.
struct OptionalMark {};
inline constexpr OptionalMark optional{};

/// A parameter's entry in a table: its name, and what is special about it.
struct ParameterName {
    ParameterName(const char* parameterName) : name(parameterName) {}
    ParameterName(const char* parameterName, OptionalMark) : name(parameterName), isOptional(true) {}

    const char* name;
    bool isOptional = false;
    bool isByReference = false;
    bool isScalar = false;
};

inline ParameterName byRefResult(const char* name) {
    ParameterName parameter(name);
    parameter.isByReference = true;
    return parameter;
}

/// A `Value` that is a text or a number, never an object: a collection's key or index.
inline ParameterName scalar(ParameterName parameter) {
    parameter.isScalar = true;
    return parameter;
}

namespace detail {

/// The traits of a parameter type. Pointers keep their star (an absent object), references lose their
/// ampersand (an object that must be there, a scalar), const goes everywhere.
template <class T> struct TraitsOf { using type = ArgumentTraits<std::remove_cvref_t<T>>; };
template <class T> struct TraitsOf<const T*> { using type = ArgumentTraits<T*>; };
template <class T> using ParameterTraits = typename TraitsOf<T>::type;

template <class T>
inline constexpr bool kIsResultReference =
    std::is_lvalue_reference_v<T> && !std::is_const_v<std::remove_reference_t<T>> &&
    !std::is_base_of_v<Object, std::remove_reference_t<T>>;

template <class T> inline constexpr bool kIsRef = false;
template <class T> inline constexpr bool kIsRef<Ref<T>> = true;

template <class T> Value toValue(T&& result) {
    if constexpr (std::is_pointer_v<std::remove_cvref_t<T>>) {
        return Value(Ref<std::remove_pointer_t<std::remove_cvref_t<T>>>(result));
    } else {
        return Value(std::forward<T>(result));
    }
}

/// What a callable of a table takes and gives, its object left out.
template <class Function> struct Signature : Signature<decltype(&Function::operator())> {};
template <class T, class Result, class... Arguments> struct Signature<Result (T::*)(Arguments...)> {
    using Returned = Result;
    using Parameters = std::tuple<Arguments...>;
};
template <class T, class Result, class... Arguments>
struct Signature<Result (T::*)(Arguments...) const> : Signature<Result (T::*)(Arguments...)> {};
template <class Tuple> struct WithoutFirst;
template <class First, class... Rest> struct WithoutFirst<std::tuple<First, Rest...>> {
    using type = std::tuple<Rest...>;
};

/// Members are called on the object; any other callable takes the object as its first argument.
template <class Function> struct MemberSignature {
    using Returned = typename Signature<Function>::Returned;
    using Parameters = typename WithoutFirst<typename Signature<Function>::Parameters>::type;
};
template <class Function>
requires std::is_member_function_pointer_v<Function>
struct MemberSignature<Function> : Signature<Function> {
};

} // namespace detail

/// Collects the rows of one class's table; converts to the finished ClassInfo.
template <class T> class Description {
public:
    Description(const char* name, const char* summary) {
        info_.name = name;
        info_.summary = summary;
    }

    /// A field that clients read and write.
    template <class Owner, class Field>
    requires std::is_object_v<Field> Description& property(const char* name, Field Owner::*field,
                                                           const char* help) {
        Member row = fieldRow(name, field, help);
        row.put = [field](Object& object, std::span<Value>, const Value& value) {
            // Nothing may follow: releasing the former value may run a client's code that frees the object.
            static_cast<T&>(object).*field = detail::ParameterTraits<Field>::take(value);
        };
        return add(std::move(row));
    }

    /// A field that clients only read.
    template <class Owner, class Field>
    requires std::is_object_v<Field> Description& readOnly(const char* name, Field Owner::*field,
                                                           const char* help) {
        return add(fieldRow(name, field, help));
    }

    /// A property that is computed: `get` is a member function or a callable on the object; with parameters
    /// it is an indexed property.
    template <class Get>
    requires(!std::is_member_object_pointer_v<Get>) Description& readOnly(
        const char* name, Get get, const char* help, std::initializer_list<ParameterName> names = {}) {
        return add(callRow(Member::Kind::Property, name, get, names, help));
    }

    /// A property that is computed both ways; `put` takes the parameters of `get` and then the new value.
    template <class Get, class Put>
    Description& property(const char* name, Get get, Put put, const char* help,
                          std::initializer_list<ParameterName> names = {}) {
        Member row = callRow(Member::Kind::Property, name, get, names, help);
        row.put = putter(put);
        return add(std::move(row));
    }

    /// A property that clients only set, as an entry's key in a dictionary; `put` takes the indexes and the
    /// value.
    template <class Put>
    Description& writeOnly(const char* name, Put put, std::initializer_list<ParameterName> indexes,
                           const char* help) {
        Member row;
        row.kind = Member::Kind::Property;
        row.name = name;
        row.help = help;
        row.type = {Type::Kind::Any, nullptr};
        for (const ParameterName& index : indexes)
            row.parameters.push_back({index.name, row.type});
        row.put = putter(put);
        return add(std::move(row));
    }

    template <class Function>
    Description& method(const char* name, Function function, std::initializer_list<ParameterName> names,
                        const char* help) {
        return add(callRow(Member::Kind::Method, name, function, names, help));
    }

    /// The member that stands for the object itself: `courses.Courses("3")` is its Item.
    Description& defaultMember(const char* name) {
        info_.makeDefault(name);
        return *this;
    }

    /// A step of For Each: a member function or callable `(uint64_t& mark) -> std::optional<Value>`; what it
    /// does is told at ClassInfo::nextElement.
    template <class At> Description& enumerates(At at) {
        info_.nextElement = [at](Object& object, uint64_t& mark) {
            return std::invoke(at, static_cast<T&>(object), mark);
        };
        return *this;
    }

    /// The class is handed out by other objects only: no ProgID.
    Description& notCreatable() {
        creatable_ = false;
        return *this;
    }

    operator ClassInfo() {
        if constexpr (std::is_default_constructible_v<T>) {
            if (creatable_)
                info_.create = [] { return Ref<Object>(New<T>()); };
        }
        return std::move(info_);
    }

private:
    Description& add(Member row) {
        info_.add(std::move(row));
        return *this;
    }

    /// Calls a function that takes an indexed property's indexes and then its new value.
    template <class Put> static std::function<void(Object&, std::span<Value>, const Value&)> putter(Put put) {
        return [put](Object& object, std::span<Value> indexes, const Value& value) {
            std::vector<Value> all(indexes.begin(), indexes.end());
            all.push_back(value);
            call(put, object, all, static_cast<typename detail::MemberSignature<Put>::Parameters*>(nullptr));
        };
    }

    template <class Owner, class Field>
    static Member fieldRow(const char* name, Field Owner::*field, const char* help) {
        Member row;
        row.kind = Member::Kind::Property;
        row.name = name;
        row.help = help;
        row.type = detail::ParameterTraits<Field>::type();
        row.get = [field](Object& object, std::span<Value>) { return Value(static_cast<T&>(object).*field); };
        return row;
    }

    template <class Function>
    static Member callRow(Member::Kind kind, const char* name, Function function,
                          std::initializer_list<ParameterName> names, const char* help) {
        using Signature = detail::MemberSignature<Function>;
        using Returned = typename Signature::Returned;
        Member row;
        row.kind = kind;
        row.name = name;
        row.help = help;
        if constexpr (!std::is_void_v<Returned>)
            row.type = detail::ParameterTraits<Returned>::type();
        row.parameters = parameterRows(names, static_cast<typename Signature::Parameters*>(nullptr));
        row.get = [function](Object& object, std::span<Value> arguments) {
            return call(function, object, arguments, static_cast<typename Signature::Parameters*>(nullptr));
        };
        return row;
    }

    template <class... Parameters>
    static std::vector<Parameter> parameterRows(std::initializer_list<ParameterName> names,
                                                std::tuple<Parameters...>*) {
        std::vector<Parameter> rows;
        const Type types[] = {detail::ParameterTraits<Parameters>::type()..., Type{}};
        const bool isKept[] = {detail::kIsRef<std::remove_cvref_t<Parameters>>..., false};
        for (const ParameterName& name : names) {
            const Type type = name.isScalar ? Type{Type::Kind::Scalar, nullptr} : types[rows.size()];
            rows.push_back({name.name, type, name.isOptional, name.isByReference, isKept[rows.size()]});
        }
        if (rows.size() != sizeof...(Parameters))
            throw std::logic_error("a table names too few or too many parameters");
        return rows;
    }

    template <class Function, class Arguments, class... Parameters>
    static Value call(const Function& function, Object& object, Arguments&& arguments,
                      std::tuple<Parameters...>*) {
        return callWith<Parameters...>(function, object, arguments, std::index_sequence_for<Parameters...>());
    }

    template <class... Parameters, class Function, class Arguments, size_t... kIndexes>
    static Value callWith(const Function& function, Object& object, Arguments& arguments,
                          std::index_sequence<kIndexes...>) {
        std::tuple<typename detail::ParameterTraits<Parameters>::Held...> held{
            takeArgument<Parameters>(arguments[kIndexes])...};
        const auto invoke = [&]() -> decltype(auto) {
            return std::invoke(function, static_cast<T&>(object),
                               detail::ParameterTraits<Parameters>::give(std::get<kIndexes>(held))...);
        };
        const auto writeBack = [&] {
            (writeResult<Parameters>(arguments[kIndexes], std::get<kIndexes>(held)), ...);
        };
        using Returned = std::invoke_result_t<decltype(invoke)>;
        if constexpr (std::is_void_v<Returned>) {
            invoke();
            writeBack();
            return {};
        } else {
            Value result = detail::toValue(invoke());
            writeBack();
            return result;
        }
    }

    /// What stands in a variable that only takes a result need not fit the result's type.
    template <class Parameter>
    static typename detail::ParameterTraits<Parameter>::Held takeArgument(const Value& argument) {
        using Held = typename detail::ParameterTraits<Parameter>::Held;
        if constexpr (detail::kIsResultReference<Parameter> &&
                      std::is_same_v<std::remove_reference_t<Parameter>, Held>) {
            Held held{};
            ignoringErrors([&] { held = detail::ParameterTraits<Parameter>::take(argument); });
            return held;
        } else {
            return detail::ParameterTraits<Parameter>::take(argument);
        }
    }

    template <class Parameter, class Held>
    static void writeResult([[maybe_unused]] Value& argument, [[maybe_unused]] Held& held) {
        if constexpr (std::is_same_v<Parameter, Value&>) {
            argument = held;
        } else if constexpr (detail::kIsResultReference<Parameter> && std::is_constructible_v<Value, Held>) {
            // A result that the call did not set leaves the caller's variable as it is, Empty included.
            if (!(takeArgument<Parameter>(argument) == held))
                argument = Value(held);
        }
    }

    ClassInfo info_;
    bool creatable_ = true;
};

template <class T> Description<T> describe(const char* name, const char* summary) { return {name, summary}; }

} // namespace norvakavlor
