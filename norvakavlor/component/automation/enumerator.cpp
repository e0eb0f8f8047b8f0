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
    Enumerator(Ref<Object> collection, uint64_t mark) : collection_(std::move(collection)), mark_(mark) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* elements, ULONG* fetched) override {
        if ((count > 0 && !elements) || (count > 1 && !fetched))
            return E_INVALIDARG;
        ULONG done = 0;
        const uint64_t start = mark_;
        const HRESULT result = guarded(nullptr, [&] {
            for (; done < count; ++done) {
                const std::optional<Value> element = next();
                if (!element)
                    return S_FALSE;
                elements[done] = toVariant(*element).detach();
            }
            return S_OK;
        });
        if (FAILED(result)) {
            // A failure returns no elements.
            for (; done > 0; --done)
                ::VariantClear(&elements[done - 1]);
            mark_ = start;
        }
        if (fetched)
            *fetched = done;
        return result;
    }

    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        return guarded(nullptr, [&] {
            for (; count > 0; --count) {
                if (!next())
                    return S_FALSE;
            }
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE Reset() override {
        mark_ = 0;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** result) override {
        if (!result)
            return E_POINTER;
        *result = nullptr;
        return guarded(nullptr, [&] {
            *result = newEnumerator(collection_, mark_).detach();
            return S_OK;
        });
    }

private:
    void* queryOwn(REFIID id) override {
        return id == __uuidof(IEnumVARIANT) ? static_cast<IEnumVARIANT*>(this) : nullptr;
    }

    std::optional<Value> next() { return collection_->dynamicClass().nextElement(*collection_, mark_); }

    const Ref<Object> collection_;
    uint64_t mark_; ///< see ClassInfo::nextElement
};

} // namespace

ComPointer<IEnumVARIANT> newEnumerator(const Ref<Object>& collection, uint64_t mark) {
    return newComObject<IEnumVARIANT, Enumerator>(collection, mark);
}

} // namespace norvakavlor
