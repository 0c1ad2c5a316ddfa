#pragma once

#include <cassert>
#include <new>
#include <string_view>
#include <utility>

#include "base/utility/utf8.h"
#include "platform/win32.h"

namespace base::utility
{
/// Owns one BSTR, which may be null. Construction from text throws std::bad_alloc when memory runs out.
class Bstr
{
public:
    Bstr() = default;
    explicit Bstr(const wchar_t* text) : m_value(SysAllocString(text)) { RequireMemory(text != nullptr); }
    explicit Bstr(std::wstring_view text)
        : m_value(SysAllocStringLen(text.data(), static_cast<UINT>(text.size())))
    {
        RequireMemory(true);
    }
    /// From UTF-8 text.
    explicit Bstr(const char* text)
    {
        if (text != nullptr)
        {
            *this = Bstr(std::wstring_view(FromUtf8(text)));
        }
    }
    /// A copy; null stays null.
    Bstr(const Bstr& other)
        : m_value(other.m_value == nullptr ? nullptr : SysAllocStringLen(other.m_value, other.Length()))
    {
        RequireMemory(other.m_value != nullptr);
    }
    Bstr(Bstr&& other) noexcept : m_value(std::exchange(other.m_value, nullptr)) {}
    Bstr& operator=(Bstr other) noexcept
    {
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~Bstr() { SysFreeString(m_value); }

    /// Takes ownership of a string.
    static Bstr Adopt(BSTR owned) noexcept
    {
        Bstr result;
        result.m_value = owned;
        return result;
    }

    BSTR Get() const noexcept { return m_value; }

    /// The text; empty for null.
    std::wstring_view View() const noexcept
    {
        return m_value == nullptr ? std::wstring_view() : std::wstring_view(m_value, Length());
    }

    /// In characters, without the terminator; 0 for null.
    UINT Length() const noexcept { return SysStringLen(m_value); }

    /// Compares as OLE automation does, in the user's locale: VARCMP_LT, VARCMP_EQ or VARCMP_GT.
    HRESULT Compare(BSTR other) const noexcept { return VarBstrCmp(m_value, other, LOCALE_USER_DEFAULT, 0); }

    /// Address for a callee's out-parameter; the string must be empty.
    BSTR* Receive() noexcept
    {
        assert(m_value == nullptr);
        return &m_value;
    }

    /// Passes ownership to the caller.
    [[nodiscard]] BSTR Detach() noexcept { return std::exchange(m_value, nullptr); }

private:
    void RequireMemory(bool hasText) const
    {
        if (hasText && m_value == nullptr)
        {
            throw std::bad_alloc();
        }
    }

    BSTR m_value = nullptr;
};
} // namespace base::utility
