#include "base/utility/bstr.h"

#include "base/utility/utf8.h"

namespace base::utility
{
Bstr::Bstr(const char* text)
{
    if (text != nullptr)
    {
        *this = Bstr(std::wstring_view(FromUtf8(text)));
    }
}

HRESULT Bstr::Compare(BSTR other) const noexcept
{
    return VarBstrCmp(m_value, other, LOCALE_USER_DEFAULT, 0);
}
} // namespace base::utility
