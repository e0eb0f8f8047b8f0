#pragma once

#include <cstdint>
#include <functional>
#include <norvakavlor/runtime/value.h>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace norvakavlor {

class [[gnu::visibility("default")]] ClassInfo;

/// The type of a property, a parameter or a result as clients know it.
struct Type {
    enum class Kind {
        None,
        Text,
        Boolean,
        Int16,
        Int32,
        Double,
        Date,
        Object,
        Node,
        Document,
        Array,
        Scalar,
        Any
    };

    /// Scalar is text, number or date, whichever comes; where one of these is wanted, an object stands for
    /// its default value. Any keeps an object as it is.
    Kind kind = Kind::None;
    /// The class of an Object; asked only when needed, as two classes may name each other.
    const ClassInfo& (*objectClass)() = nullptr;
};

struct Parameter {
    std::string name;
    Type type;
    bool optional = false;
    /// A result that the call writes back into the caller's variable.
    bool byReference = false;
    /// An object that stays held after the call; other objects are only used during it.
    bool isKept = false;
};

/// One row of a class's table. A property has `get`, and `put` unless it is read-only; a method has `get`
/// alone. Both take the arguments in the order of `parameters`, one for each (Empty for one left out); what
/// the call wrote to a parameter by reference stands in its place afterwards.
struct Member {
    enum class Kind { Property, Method };

    Kind kind = Kind::Method;
    std::string name;
    std::string help;
    Type type;
    std::vector<Parameter> parameters;
    std::function<Value(Object&, std::span<Value>)> get;
    std::function<void(Object&, std::span<Value>, const Value&)> put;
    /// Automation's number of the member: derived from its name, so that it never changes; 0 for the
    /// default member.
    int32_t dispatchId = 0;
};

/// A class as its clients see it: creation, late-bound calls, Automation, the type library and the
/// reference pages all come from this one table. Built by `describe` (describe.h).
class ClassInfo {
public:
    std::string name;
    std::string summary;
    /// Empty for classes that only other objects hand out.
    std::function<Ref<Object>()> create;
    /// One step of For Each: the element at a mark, or nothing at the end; empty where the class is no
    /// collection. A walk begins with the mark 0 and each step moves it past its element. A collection may
    /// change meanwhile: removing an element makes the walk pass over no other one.
    std::function<std::optional<Value>(Object&, uint64_t& mark)> nextElement;

    const std::vector<Member>& members() const { return members_; }
    /// Both end the program with std::logic_error for a table that contradicts itself, which the first test
    /// that touches it shows.
    void add(Member member);
    void makeDefault(std::string_view name);

    /// Letter case is ignored. Null when there is no such member.
    const Member* find(std::string_view name) const;
    const Member* find(int32_t dispatchId) const;
    /// Null when the class has none.
    const Member* defaultMember() const { return find(0); }

private:
    std::vector<Member> members_;
    std::unordered_map<std::string, size_t> byName_; ///< upper-cased names
    std::unordered_map<int32_t, size_t> byDispatchId_;
};

} // namespace norvakavlor
