#include <tests/support/client.h>

#include <memory>
#include <norvakavlor/component/automation/class_factory.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/text/error.h>
#include <tests/automation/client.h>

namespace norvakavlor::testing::client {
namespace {

constexpr HRESULT kNumberBase = static_cast<HRESULT>(0x800A0000);

/// The error that a script host makes of what Invoke came to.
Error errorOf(const Outcome& outcome) {
    if (outcome.result == DISP_E_MEMBERNOTFOUND || outcome.result == DISP_E_UNKNOWNNAME)
        return runtimeError(RuntimeError::MemberNotFound);
    if (outcome.result != DISP_E_EXCEPTION)
        return {outcome.result, "", "Invoke failed"};
    const bool isSmall = (outcome.number & static_cast<HRESULT>(0xFFFF0000)) == kNumberBase;
    return {isSmall ? outcome.number & 0xFFFF : outcome.number, outcome.source, outcome.description};
}

Value resultOf(Outcome outcome) {
    if (outcome.result != S_OK)
        throw errorOf(outcome);
    return outcome.asValue();
}

DISPID idOf(IDispatch& object, std::string_view member) {
    HRESULT result = S_OK;
    const DISPID id = idsOf(object, {platform::toWide(member)}, &result)[0];
    if (result != S_OK)
        throw runtimeError(result == E_OUTOFMEMORY ? RuntimeError::OutOfMemory
                                                   : RuntimeError::MemberNotFound);
    return id;
}

} // namespace

Ref<Object> create(std::string_view className) {
    const ClassInfo* info = findCreatableClass(std::string(className));
    ComPointer<IDispatch> object;
    const HRESULT result =
        info ? newClassFactory(*info)->CreateInstance(nullptr, __uuidof(IDispatch),
                                                      reinterpret_cast<void**>(object.receive()))
             : REGDB_E_CLASSNOTREG;
    if (result != S_OK)
        throw runtimeError(result == E_OUTOFMEMORY ? RuntimeError::OutOfMemory
                                                   : RuntimeError::CannotCreateObject);
    return ownObject(*object.get());
}

Value call(Object& object, std::string_view member, std::vector<Value> arguments) {
    const ComPointer<IDispatch> wrapper = wrapperOf(Ref<Object>(&object));
    std::vector<OwnedVariant> variables;
    for (const Value& argument : arguments)
        variables.push_back(toVariant(argument));
    std::vector<VARIANT> passed;
    for (auto variable = variables.rbegin(); variable != variables.rend(); ++variable)
        passed.push_back(reference(VT_VARIANT, variable->get()));
    DISPPARAMS all{passed.data(), nullptr, static_cast<UINT>(passed.size()), 0};
    return resultOf(
        invoke(*wrapper.get(), idOf(*wrapper.get(), member), DISPATCH_METHOD | DISPATCH_PROPERTYGET, all));
}

Value get(Object& object, std::string_view property) { return call(object, property); }

void put(Object& object, std::string_view property, const Value& value) {
    const ComPointer<IDispatch> wrapper = wrapperOf(Ref<Object>(&object));
    OwnedVariant variable = toVariant(value);
    VARIANT passed = *variable.get();
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS all{&passed, &named, 1, 1};
    resultOf(invoke(*wrapper.get(), idOf(*wrapper.get(), property),
                    value.isObject() ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, all));
}

std::vector<Value> elementsOf(Object& collection) {
    const ComPointer<IDispatch> wrapper = wrapperOf(Ref<Object>(&collection));
    DISPPARAMS none{};
    Outcome outcome = invoke(*wrapper.get(), DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET, none);
    if (outcome.result != S_OK)
        throw errorOf(outcome);
    const ComPointer<IEnumVARIANT> walk =
        ComPointer<IUnknown>(outcome.value.get()->punkVal).as<IEnumVARIANT>();
    std::vector<Value> elements;
    for (OwnedVariant element; walk->Next(1, element.get(), nullptr) == S_OK; element = OwnedVariant())
        elements.push_back(toValue(*element.get()));
    return elements;
}

} // namespace norvakavlor::testing::client
