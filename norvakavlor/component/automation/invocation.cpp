#include <norvakavlor/component/automation/invocation.h>

#include <cstddef>
#include <deque>
#include <exception>
#include <memory>
#include <norvakavlor/component/automation/arrays.h>
#include <norvakavlor/component/automation/script_node.h>
#include <norvakavlor/component/automation/variant.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/platform/windows/com_foreign_object.h>
#include <norvakavlor/text/error.h>
#include <utility>
#include <vector>

namespace norvakavlor {
namespace {

bool isMissing(const VARIANT& argument) {
    const VARIANT& variant = referred(argument);
    return variant.vt == VT_ERROR && variant.scode == DISP_E_PARAMNOTFOUND;
}

bool wantsScalar(const Type& type) {
    return (type.kind >= Type::Kind::Text && type.kind <= Type::Kind::Date) ||
           type.kind == Type::Kind::Scalar;
}

ForeignObject* foreignIn(const Value& value) {
    const auto* object = value.as<Ref<Object>>();
    return object ? dynamic_cast<ForeignObject*>(object->get()) : nullptr;
}

/// An argument or a property's new value. If a text, number or date is wanted, an object gives its default
/// value.
Value valueFor(const VARIANT& variant, const Type& type) {
    Value value = toValue(variant);
    if (!wantsScalar(type))
        return value;
    // A default value may be an object with another one; a circle is the client's fault.
    for (int step = 0; const ForeignObject* foreign = foreignIn(value); ++step) {
        if (step == 8)
            throw runtimeError(RuntimeError::TypeMismatch);
        value = defaultValueOf(*foreign->object.get());
    }
    return value;
}

/// The arguments of one call, on the way in and back.
class Arguments {
public:
    /// Takes the arguments for a member's parameters.
    Arguments(const Member& member, const DISPPARAMS& passed) : member_(member) {
        const UINT positional = passed.cArgs - passed.cNamedArgs;
        for (UINT index = 0; index < positional; ++index)
            positional_.push_back(take(passed.rgvarg[passed.cArgs - 1 - index], index));
        for (UINT index = 0; index < passed.cNamedArgs; ++index) {
            const auto position = static_cast<size_t>(passed.rgdispidNamedArgs[index]);
            if (position >= member.parameters.size())
                throw runtimeError(RuntimeError::NamedArgumentNotFound);
            named_.emplace_back(member.parameters[position].name, take(passed.rgvarg[index], position));
        }
    }

    std::vector<Value> complete() { return completeArguments(member_, std::move(positional_), named_); }

    void giveNodesBack() {
        for (ScriptNode& node : nodes_)
            node.writeBack();
    }

    /// `results` has one value for each parameter.
    void giveResultsBack(const std::vector<Value>& results) {
        for (const Lent& lent : results_) {
            const Value& now = results[lent.position];
            if (!(now.storage() == lent.before.storage()))
                assignTo(*lent.variable, now);
        }
        for (const ArrayArgument& array : arrays_)
            array.writeBack();
    }

private:
    /// A client's variable that takes a result, and what it held.
    struct Lent {
        VARIANT* variable;
        size_t position;
        Value before;
    };

    Value take(VARIANT& variant, size_t position) {
        if (position >= member_.parameters.size())
            throw runtimeError(RuntimeError::WrongNumberOfArguments);
        const Parameter& parameter = member_.parameters[position];
        if (isMissing(variant)) {
            if (!parameter.optional)
                throw runtimeError(RuntimeError::ArgumentNotOptional);
            return {};
        }
        Value value = convert(variant, parameter.type);
        if (parameter.byReference)
            results_.push_back({&variant, position, value});
        if (const auto* array = value.as<std::shared_ptr<Array>>())
            arrays_.emplace_back(referred(variant), *array);
        return value;
    }

    Value convert(const VARIANT& variant, const Type& type) {
        const Value value = valueFor(variant, type);
        const ForeignObject* foreign = foreignIn(value);
        if (foreign && type.kind == Type::Kind::Document && isScriptDocument(*foreign->object.get()))
            return emptyDocument();
        if (foreign && type.kind == Type::Kind::Node && isScriptNode(*foreign->object.get()))
            return nodes_.emplace_back(*foreign->object.get()).value();
        return value;
    }

    const Member& member_;
    std::vector<Value> positional_;
    NamedArguments named_;
    std::vector<Lent> results_;
    std::vector<ArrayArgument> arrays_;
    std::deque<ScriptNode> nodes_;
};

} // namespace

Value invokeCall(Object& object, const Member& member, const DISPPARAMS& passed) {
    const Target target = resolveTarget(object, member, passed.cArgs);
    if (!target.member->get)
        throw runtimeError(RuntimeError::MemberNotFound);
    Arguments arguments(*target.member, passed);
    std::vector<Value> values = arguments.complete();
    Value result;
    try {
        result = target.member->get(*target.object, values);
    } catch (const std::exception&) {
        // The call's error matters more than a node that takes no more.
        ignoringErrors([&] { arguments.giveNodesBack(); });
        throw;
    }
    arguments.giveNodesBack();
    arguments.giveResultsBack(values);
    return result;
}

void invokePut(Object& object, const Member& member, const DISPPARAMS& passed) {
    if (passed.cArgs == 0)
        throw runtimeError(RuntimeError::ArgumentNotOptional);
    const bool isNamed = passed.cNamedArgs > 0 && passed.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    const Target target = resolveTarget(object, member, passed.cArgs - 1);
    if (!target.member->put)
        throw runtimeError(RuntimeError::MemberNotFound);
    // The value comes first in the list, named or not.
    DISPPARAMS indexes = passed;
    indexes.rgvarg += 1;
    indexes.cArgs -= 1;
    if (isNamed) {
        indexes.rgdispidNamedArgs += 1;
        indexes.cNamedArgs -= 1;
    }
    Arguments arguments(*target.member, indexes);
    std::vector<Value> values = arguments.complete();
    target.member->put(*target.object, values, valueFor(passed.rgvarg[0], target.member->type));
}

} // namespace norvakavlor
