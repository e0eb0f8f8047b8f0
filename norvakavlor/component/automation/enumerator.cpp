#include <norvakavlor/component/automation/enumerator.h>

#include <norvakavlor/component/automation/com_object.h>
#include <norvakavlor/component/automation/failure.h>
#include <norvakavlor/component/automation/variant.h>
#include <norvakavlor/runtime/class_info.h>
#include <optional>
#include <utility>

namespace norvakavlor {
namespace {

class Enumerator final : public ComObject<IEnumVARIANT> {
public:
    Enumerator(Ref<Object> collection, size_t position)
        : collection_(std::move(collection)), position_(position) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* elements, ULONG* fetched) override {
        if (!elements || (count != 1 && !fetched))
            return E_INVALIDARG;
        ULONG done = 0;
        const HRESULT result = guarded(nullptr, [&] {
            for (; done < count; ++done, ++position_) {
                const std::optional<Value> element = current();
                if (!element)
                    return S_FALSE;
                elements[done] = toVariant(*element).detach();
            }
            return S_OK;
        });
        if (FAILED(result)) {
            // Nothing is handed over with a failure.
            for (; done > 0; --done, --position_)
                ::VariantClear(&elements[done - 1]);
        }
        if (fetched)
            *fetched = done;
        return result;
    }

    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        return guarded(nullptr, [&] {
            for (; count > 0; --count, ++position_) {
                if (!current())
                    return S_FALSE;
            }
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE Reset() override {
        position_ = 0;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** result) override {
        if (!result)
            return E_POINTER;
        *result = nullptr;
        return guarded(nullptr, [&] {
            *result = newEnumerator(collection_, position_).detach();
            return S_OK;
        });
    }

private:
    void* queryOwn(REFIID id) override {
        return id == __uuidof(IEnumVARIANT) ? static_cast<IEnumVARIANT*>(this) : nullptr;
    }

    std::optional<Value> current() const {
        return collection_->dynamicClass().elementAt(*collection_, position_);
    }

    const Ref<Object> collection_;
    size_t position_;
};

} // namespace

ComPointer<IEnumVARIANT> newEnumerator(const Ref<Object>& collection, size_t position) {
    return newComObject<IEnumVARIANT, Enumerator>(collection, position);
}

} // namespace norvakavlor
