#include <norvakavlor/component/automation/object_wrapper.h>

#include <norvakavlor/component/automation/com_object.h>
#include <norvakavlor/component/automation/enumerator.h>
#include <norvakavlor/component/automation/failure.h>
#include <norvakavlor/component/automation/guid.h>
#include <norvakavlor/component/automation/invocation.h>
#include <norvakavlor/component/automation/type_library.h>
#include <norvakavlor/component/automation/variant.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <norvakavlor/text/text.h>
#include <objbase.h>
#include <ocidl.h>
#include <utility>

namespace norvakavlor {
namespace {

/// Only this module's own objects have this interface. Each loaded module makes a new one, as another copy of
/// the library must not take this one's objects for its own.
const IID& ownInterface() {
    static const IID id = [] {
        IID made{};
        ::CoCreateGuid(&made);
        return made;
    }();
    return id;
}

class ObjectWrapper final : public ComObject<IDispatch, IProvideClassInfo, ISupportErrorInfo> {
public:
    explicit ObjectWrapper(Ref<Object> object) : object_(std::move(object)) { object_->wrapper = this; }

    Ref<Object> object() const { return object_; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** result) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                                     DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* details,
                                     UINT* badArgument) override;

    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** result) override;
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override;

private:
    ~ObjectWrapper() override { object_->wrapper = nullptr; }
    void* queryOwn(REFIID id) override;

    const ClassInfo& info() const { return object_->dynamicClass(); }

    const Ref<Object> object_;
};

void* ObjectWrapper::queryOwn(REFIID id) {
    if (id == __uuidof(IDispatch))
        return static_cast<IDispatch*>(this);
    if (id == __uuidof(IProvideClassInfo))
        return static_cast<IProvideClassInfo*>(this);
    if (id == __uuidof(ISupportErrorInfo))
        return static_cast<ISupportErrorInfo*>(this);
    if (id == ownInterface())
        return this;
    void* found = nullptr;
    guarded(nullptr, [&] {
        if (id == guidsOf(info()).interfaceGuid)
            found = static_cast<IDispatch*>(this);
        return S_OK;
    });
    return found;
}

HRESULT ObjectWrapper::GetTypeInfoCount(UINT* count) {
    if (!count)
        return E_POINTER;
    return guarded(nullptr, [&] {
        *count = findTypeInfo(guidsOf(info()).interfaceGuid) ? 1 : 0;
        return S_OK;
    });
}

HRESULT ObjectWrapper::GetTypeInfo(UINT index, LCID, ITypeInfo** result) {
    if (!result)
        return E_POINTER;
    *result = nullptr;
    if (index != 0)
        return DISP_E_BADINDEX;
    return guarded(nullptr, [&]() -> HRESULT {
        *result = findTypeInfo(guidsOf(info()).interfaceGuid).detach();
        return *result ? S_OK : TYPE_E_ELEMENTNOTFOUND;
    });
}

HRESULT ObjectWrapper::GetClassInfo(ITypeInfo** result) {
    if (!result)
        return E_POINTER;
    *result = nullptr;
    return guarded(nullptr, [&]() -> HRESULT {
        *result = findTypeInfo(guidsOf(info()).classGuid).detach();
        return *result ? S_OK : TYPE_E_ELEMENTNOTFOUND;
    });
}

HRESULT ObjectWrapper::InterfaceSupportsErrorInfo(REFIID id) {
    return guarded(nullptr, [&]() -> HRESULT {
        return id == __uuidof(IDispatch) || id == guidsOf(info()).interfaceGuid ? S_OK : S_FALSE;
    });
}

/// The first name is a member's, the others are its parameters'.
HRESULT ObjectWrapper::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    if (reserved != IID_NULL)
        return DISP_E_UNKNOWNINTERFACE;
    if (!names || !ids || count == 0)
        return E_INVALIDARG;
    return guarded(nullptr, [&] {
        for (UINT index = 0; index < count; ++index)
            ids[index] = DISPID_UNKNOWN;
        const std::string name = platform::fromWide(names[0]);
        const Member* member = info().find(name);
        if (member) {
            ids[0] = member->dispatchId;
        } else if (info().nextElement && equalIgnoringCase(name, "_NewEnum")) {
            ids[0] = DISPID_NEWENUM;
        }
        for (UINT index = 1; member && index < count; ++index) {
            const std::string parameter = platform::fromWide(names[index]);
            for (size_t position = 0; position < member->parameters.size(); ++position) {
                if (equalIgnoringCase(member->parameters[position].name, parameter))
                    ids[index] = static_cast<DISPID>(position);
            }
        }
        for (UINT index = 0; index < count; ++index) {
            if (ids[index] == DISPID_UNKNOWN)
                return DISP_E_UNKNOWNNAME;
        }
        return S_OK;
    });
}

HRESULT ObjectWrapper::Invoke(DISPID id, REFIID reserved, LCID, WORD flags, DISPPARAMS* arguments,
                              VARIANT* result, EXCEPINFO* details, UINT*) {
    if (reserved != IID_NULL)
        return DISP_E_UNKNOWNINTERFACE;
    if (!arguments || arguments->cNamedArgs > arguments->cArgs)
        return E_INVALIDARG;
    // Keeps the object alive during the call.
    const ComPointer<IDispatch> self(this);
    return guarded(details, [&]() -> HRESULT {
        OwnedVariant outcome;
        if (id == DISPID_NEWENUM && info().nextElement) {
            outcome.get()->punkVal = newEnumerator(object_).detach();
            outcome.get()->vt = VT_UNKNOWN;
        } else {
            const Member* member = info().find(id);
            const bool isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
            // Scripts may call a property; a method cannot be read.
            if (!member || (!isPut && member->kind == Member::Kind::Method && !(flags & DISPATCH_METHOD)))
                return DISP_E_MEMBERNOTFOUND;
            if (isPut) {
                invokePut(*object_, *member, *arguments);
            } else {
                outcome = toVariant(invokeCall(*object_, *member, *arguments));
            }
        }
        if (result)
            *result = outcome.detach();
        return S_OK;
    });
}

} // namespace

ComPointer<IDispatch> wrapperOf(const Ref<Object>& object) {
    if (object->wrapper)
        return ComPointer<IDispatch>(static_cast<ObjectWrapper*>(object->wrapper));
    return newComObject<IDispatch, ObjectWrapper>(object);
}

Ref<Object> ownObject(IUnknown& object) {
    void* found = nullptr;
    if (object.QueryInterface(ownInterface(), &found) != S_OK)
        return nullptr;
    auto* wrapper = static_cast<ObjectWrapper*>(found);
    Ref<Object> own = wrapper->object();
    wrapper->Release();
    return own;
}

} // namespace norvakavlor
