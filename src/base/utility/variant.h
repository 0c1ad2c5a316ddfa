#pragma once

#include "platform/win32.h"

namespace base::utility
{
/// Owns one VARIANT, which starts out empty.
class Variant
{
public:
    Variant() noexcept { VariantInit(&m_value); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    // A bare VT_BYREF, as the pipeline hands out for handles, owns nothing; that clearing refuses it is no
    // fault.
    ~Variant() { VariantClear(&m_value); }

    const VARIANT& Get() const noexcept { return m_value; }

    /// Address for a callee's out-parameter; the value must be empty.
    VARIANT* Receive() noexcept
    {
        VariantClear(&m_value);
        return &m_value;
    }

private:
    VARIANT m_value;
};
} // namespace base::utility
