#include <norvakavlor/component/late_bound.h>

#include <algorithm>
#include <new>
#include <norvakavlor/runtime/reason.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <optional>

namespace norvakavlor {
namespace {

const Member& memberNamed(const Object& object, std::string_view name) {
    if (const Member* member = object.dynamicClass().find(name))
        return *member;
    throw runtimeError(RuntimeError::MemberNotFound);
}

size_t parameterNamed(const Member& member, std::string_view name) {
    const auto found = std::ranges::find_if(member.parameters, [&](const Parameter& parameter) {
        return equalIgnoringCase(parameter.name, name);
    });
    if (found == member.parameters.end())
        throw runtimeError(RuntimeError::NamedArgumentNotFound);
    return static_cast<size_t>(found - member.parameters.begin());
}

/// Late-bound callers know errors by number, so bad_alloc becomes 7 here, and may ask for the reason.
template <class Step> auto numbered(Step&& step) {
    try {
        return step();
    } catch (const Error& error) {
        noteReason(error.reason());
        throw;
    } catch (const std::bad_alloc&) {
        throw runtimeError(RuntimeError::OutOfMemory);
    }
}

} // namespace

std::vector<Value> completeArguments(const Member& member, std::vector<Value> positional,
                                     const NamedArguments& named) {
    const size_t count = member.parameters.size();
    // Nearly every read of a property: what follows takes longer than the read.
    if (count == 0 && positional.empty() && named.empty())
        return positional;
    if (positional.size() > count)
        throw runtimeError(RuntimeError::WrongNumberOfArguments);
    std::vector<bool> given(count, false);
    std::fill_n(given.begin(), positional.size(), true);
    positional.resize(count);
    for (const auto& [name, value] : named) {
        const size_t index = parameterNamed(member, name);
        if (given[index])
            throw runtimeError(RuntimeError::WrongNumberOfArguments);
        given[index] = true;
        positional[index] = value;
    }
    for (size_t index = 0; index < count; ++index) {
        if (!given[index] && !member.parameters[index].optional)
            throw runtimeError(RuntimeError::ArgumentNotOptional);
    }
    return positional;
}

Target resolveTarget(Object& object, const Member& member, size_t argumentCount) {
    const bool takesNone = member.kind == Member::Kind::Property && member.parameters.empty() && member.get;
    if (argumentCount == 0 || !takesNone)
        return {Ref<Object>(&object), &member};
    const Value held = member.get(object, {});
    const auto* inner = held.as<Ref<Object>>();
    if (!inner)
        throw runtimeError(RuntimeError::WrongNumberOfArguments);
    if (!*inner)
        throw runtimeError(RuntimeError::ObjectNotSet);
    const Member* defaultMember = (*inner)->dynamicClass().defaultMember();
    if (!defaultMember)
        throw runtimeError(RuntimeError::WrongNumberOfArguments);
    return {*inner, defaultMember};
}

Value callMember(Object& object, const Member& member, std::vector<Value>& arguments,
                 const NamedArguments& named) {
    return numbered([&] {
        const Target target = resolveTarget(object, member, arguments.size() + named.size());
        if (!target.member->get)
            throw runtimeError(RuntimeError::MemberNotFound);
        arguments = completeArguments(*target.member, std::move(arguments), named);
        return target.member->get(*target.object, arguments);
    });
}

void putMember(Object& object, const Member& member, const Value& value, std::vector<Value> indexes,
               const NamedArguments& named) {
    numbered([&] {
        const Target target = resolveTarget(object, member, indexes.size() + named.size());
        if (!target.member->put)
            throw runtimeError(RuntimeError::MemberNotFound);
        indexes = completeArguments(*target.member, std::move(indexes), named);
        target.member->put(*target.object, indexes, value);
    });
}

Value call(Object& object, std::string_view member, std::vector<Value>& arguments) {
    return callMember(object, memberNamed(object, member), arguments);
}

Value call(Object& object, std::string_view member, std::vector<Value>&& arguments) {
    return callMember(object, memberNamed(object, member), arguments);
}

Value call(Object& object, std::string_view member, std::vector<Value> arguments,
           const NamedArguments& named) {
    return callMember(object, memberNamed(object, member), arguments, named);
}

Value get(Object& object, std::string_view property) { return call(object, property); }

void put(Object& object, std::string_view property, const Value& value, std::vector<Value> indexes) {
    putMember(object, memberNamed(object, property), value, std::move(indexes));
}

std::vector<Value> elementsOf(Object& object) {
    const ClassInfo& info = object.dynamicClass();
    if (!info.nextElement)
        throw runtimeError(RuntimeError::MemberNotFound);
    return numbered([&] {
        std::vector<Value> elements;
        uint64_t mark = 0;
        while (std::optional<Value> element = info.nextElement(object, mark))
            elements.push_back(*std::move(element));
        return elements;
    });
}

} // namespace norvakavlor
