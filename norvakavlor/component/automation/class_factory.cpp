#include <norvakavlor/component/automation/class_factory.h>

#include <norvakavlor/component/automation/com_object.h>
#include <norvakavlor/component/automation/failure.h>
#include <norvakavlor/component/automation/object_wrapper.h>

namespace norvakavlor {
namespace {

class ClassFactory final : public ComObject<IClassFactory> {
public:
    explicit ClassFactory(const ClassInfo& info) : info_(info) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** result) override {
        if (!result)
            return E_POINTER;
        *result = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        return guarded(nullptr, [&] { return wrapperOf(info_.create())->QueryInterface(id, result); });
    }

    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock) {
            lockModule();
        } else {
            unlockModule();
        }
        return S_OK;
    }

private:
    void* queryOwn(REFIID id) override {
        return id == __uuidof(IClassFactory) ? static_cast<IClassFactory*>(this) : nullptr;
    }

    const ClassInfo& info_;
};

} // namespace

ComPointer<IClassFactory> newClassFactory(const ClassInfo& info) {
    return newComObject<IClassFactory, ClassFactory>(info);
}

} // namespace norvakavlor
