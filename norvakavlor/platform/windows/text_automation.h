#pragma once

#include <new>
#include <norvakavlor/platform/windows/text_wide.h>
#include <string>
#include <string_view>
#include <windows.h>

#include <oleauto.h>

namespace norvakavlor::platform {

/// Owns a BSTR. `AutomationText name; node->get_nodeName(name.put()); name.utf8();`
class AutomationText {
public:
    AutomationText() = default;
    explicit AutomationText(std::string_view utf8) {
        const std::wstring text = toWide(utf8);
        text_ = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (!text_)
            throw std::bad_alloc();
    }
    AutomationText(const AutomationText&) = delete;
    AutomationText& operator=(const AutomationText&) = delete;
    ~AutomationText() { ::SysFreeString(text_); }

    BSTR get() const { return text_; }
    /// Receives a text from a call, and owns it.
    BSTR* put() {
        ::SysFreeString(text_);
        text_ = nullptr;
        return &text_;
    }
    std::string utf8() const { return fromWide({text_, ::SysStringLen(text_)}); }

private:
    BSTR text_ = nullptr;
};

} // namespace norvakavlor::platform
