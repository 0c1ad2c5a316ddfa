#pragma once

#include <concepts>

#include "base/utility/bstr.h"
#include "base/utility/comptr.h"
#include "platform/win32.h"

namespace base::utility
{
/// Owns one VARIANT, initially empty.
class Variant
{
public:
    Variant() noexcept { VariantInit(&m_value); }
    explicit Variant(LONG number) noexcept : Variant()
    {
        V_VT(&m_value) = VT_I4;
        V_I4(&m_value) = number;
    }
    // Accepts bool only: pointers, string literals among them, would convert to it.
    explicit Variant(std::same_as<bool> auto truth) noexcept : Variant()
    {
        V_VT(&m_value) = VT_BOOL;
        V_BOOL(&m_value) = truth ? VARIANT_TRUE : VARIANT_FALSE;
    }
    /// Takes ownership of the string.
    explicit Variant(Bstr text) noexcept : Variant()
    {
        V_VT(&m_value) = VT_BSTR;
        V_BSTR(&m_value) = text.Detach();
    }
    /// Adds a reference to the object.
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
    // The pipeline passes handles as a bare VT_BYREF, which owns nothing: that VariantClear fails for it does
    // not matter.
    ~Variant() { VariantClear(&m_value); }

    const VARIANT& Get() const noexcept { return m_value; }

    /// Clears the value and returns its address for a callee's out-parameter.
    VARIANT* Receive() noexcept
    {
        VariantClear(&m_value);
        return &m_value;
    }

    /// Clears the value, for callers that must check the result.
    [[nodiscard]] HRESULT Clear() noexcept { return VariantClear(&m_value); }

    /// Queries the object that it holds for an interface; E_NOINTERFACE when it holds no object. `result`
    /// must be empty.
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

    /// The handle, which the pipeline passes as a bare VT_BYREF; null for anything else.
    HANDLE GetHandle() const noexcept { return m_value.vt == VT_BYREF ? m_value.byref : nullptr; }

private:
    VARIANT m_value;
};
} // namespace base::utility
