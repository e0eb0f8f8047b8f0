#pragma once

#include <atomic>
#include <norvakavlor/component/automation/module.h>
#include <norvakavlor/platform/windows/com_pointer.h>
#include <unknwn.h>
#include <utility>

namespace norvakavlor {

/// The base of what clients hold: counts references and keeps the module loaded. The maker has the first
/// reference. A class lists its interfaces and answers queryOwn:
///
///     class Factory final : public ComObject<IClassFactory> { void* queryOwn(REFIID id) override; ... };
template <class First, class... Others> class ComObject : public First, public Others... {
public:
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    ULONG STDMETHODCALLTYPE AddRef() final { return ++references_; }

    ULONG STDMETHODCALLTYPE Release() final {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) final {
        if (!result)
            return E_POINTER;
        *result = id == __uuidof(IUnknown) ? static_cast<First*>(this) : queryOwn(id);
        if (!*result)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

protected:
    ComObject() = default;
    virtual ~ComObject() = default;

    /// The pointer for one of the class's interfaces, or null. Must not throw.
    virtual void* queryOwn(REFIID id) = 0;

private:
    std::atomic<ULONG> references_ = 1;
    ModuleUse use_;
};

/// A new object by one of its interfaces: `newComObject<IClassFactory, Factory>(info)`.
template <class Interface, class Class, class... Arguments>
ComPointer<Interface> newComObject(Arguments&&... arguments) {
    ComPointer<Interface> pointer;
    *pointer.receive() = new Class(std::forward<Arguments>(arguments)...); // it starts with one reference
    return pointer;
}

} // namespace norvakavlor
