#pragma once

#include <concepts>

#include "base/utility/bstr.h"
#include "base/utility/comptr.h"
#include "platform/win32.h"

namespace base::utility
{
/// Owns one VARIANT, which starts out empty.
class Variant
{
public:
    Variant() noexcept { VariantInit(&m_value); }
    explicit Variant(LONG number) noexcept : Variant()
    {
        V_VT(&m_value) = VT_I4;
        V_I4(&m_value) = number;
    }
    // Nothing but bool itself: pointers convert to it, string literals among them.
    explicit Variant(std::same_as<bool> auto truth) noexcept : Variant()
    {
        V_VT(&m_value) = VT_BOOL;
        V_BOOL(&m_value) = truth ? VARIANT_TRUE : VARIANT_FALSE;
    }
    /// Takes the string over.
    explicit Variant(Bstr text) noexcept : Variant()
    {
        V_VT(&m_value) = VT_BSTR;
        V_BSTR(&m_value) = text.Detach();
    }
    /// Shares the object.
    explicit Variant(IUnknown* object) noexcept : Variant()
    {
        V_VT(&m_value) = VT_UNKNOWN;
        V_UNKNOWN(&m_value) = object;
        if (object != nullptr)
        {
            object->AddRef();
        }
    }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    // A bare VT_BYREF, as the pipeline hands out for handles, owns nothing; that clearing refuses it is no
    // fault.
    ~Variant() { VariantClear(&m_value); }

    const VARIANT& Get() const noexcept { return m_value; }

    /// Address for a callee's out-parameter; what it held is cleared.
    VARIANT* Receive() noexcept
    {
        VariantClear(&m_value);
        return &m_value;
    }

    /// Empties it before its time, for callers that answer for the result.
    [[nodiscard]] HRESULT Clear() noexcept { return VariantClear(&m_value); }

    /// Asks the object that it holds for an interface and answers what that does; E_NOINTERFACE when it holds
    /// no object. `result` must be empty.
    template <typename T>
    [[nodiscard]] HRESULT QueryHeld(ComPtr<T>& result) const noexcept
    {
        const bool holdsObject = m_value.vt == VT_UNKNOWN || m_value.vt == VT_DISPATCH;
        if (!holdsObject || m_value.punkVal == nullptr)
        {
            return E_NOINTERFACE;
        }
        return m_value.punkVal->QueryInterface(__uuidof(T), result.ReceiveUntyped());
    }

    /// The handle that it holds as the pipeline passes handles, as a bare VT_BYREF; null for anything else.
    HANDLE GetHandle() const noexcept { return m_value.vt == VT_BYREF ? m_value.byref : nullptr; }

private:
    VARIANT m_value;
};
} // namespace base::utility
