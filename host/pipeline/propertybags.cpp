#include "host/pipeline/propertybags.h"

#include <string_view>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "host/pipeline/part.h"

namespace host::pipeline
{
using base::utility::Bstr;

namespace
{
std::wstring ToName(const wchar_t* name)
{
    return name == nullptr ? std::wstring() : std::wstring(name);
}

std::string ToSubject(const wchar_t* name)
{
    return base::utility::ToUtf8(ToName(name));
}

/// Copies a value. A handle is copied as it is: a VARIANT does not own it.
[[nodiscard]] HRESULT CopyValue(const VARIANT& from, VARIANT* to)
{
    if (from.vt == VT_BYREF)
    {
        *to = from;
        return S_OK;
    }
    // The source is only read, whatever the header says.
    return VariantCopy(to, const_cast<VARIANT*>(&from));
}
} // namespace

void PipelinePropertyBag::SetHandle(const wchar_t* name, HANDLE handle)
{
    VARIANT* const value = m_values[name].Receive();
    value->byref = handle;
    value->vt = VT_BYREF;
}

void PipelinePropertyBag::SetNumber(const wchar_t* name, ULONG number)
{
    VARIANT* const value = m_values[name].Receive();
    value->ulVal = number;
    value->vt = VT_UI4;
}

STDMETHODIMP PipelinePropertyBag::AddProperty(const wchar_t* name, const VARIANT* value)
{
    return m_trace.Answer("IPrintPipelinePropertyBag::AddProperty", ToSubject(name), [&] {
        if (name == nullptr || value == nullptr)
        {
            return E_POINTER;
        }
        const HRESULT copied = CopyValue(*value, m_values[name].Receive());
        if (FAILED(copied))
        {
            m_values.erase(name);
        }
        return copied;
    });
}

STDMETHODIMP PipelinePropertyBag::GetProperty(const wchar_t* name, VARIANT* value)
{
    return m_trace.Answer("IPrintPipelinePropertyBag::GetProperty", ToSubject(name), [&] {
        if (name == nullptr || value == nullptr)
        {
            return E_POINTER;
        }
        const auto found = m_values.find(std::wstring_view(name));
        return found == m_values.end() ? kElementNotFound : CopyValue(found->second.Get(), value);
    });
}

STDMETHODIMP_(BOOL) PipelinePropertyBag::DeleteProperty(const wchar_t* name)
{
    const bool isDeleted = m_values.erase(ToName(name)) != 0;
    m_trace.Record("IPrintPipelinePropertyBag::DeleteProperty", ToSubject(name), isDeleted ? S_OK : S_FALSE);
    return isDeleted;
}

template <typename Body>
HRESULT DriverPropertyBag::Answer(const char* method, BSTR name, Body&& body)
{
    return m_trace.Answer(std::string("IPrinterPropertyBag::") + method, ToSubject(name), body);
}

STDMETHODIMP DriverPropertyBag::GetInt32(BSTR name, LONG* value)
{
    return Answer("GetInt32", name, [&] {
        const auto found = m_numbers.find(ToName(name));
        return found == m_numbers.end() ? kElementNotFound : CopyOut(found->second, value);
    });
}

STDMETHODIMP DriverPropertyBag::GetString(BSTR name, BSTR* value)
{
    return Answer("GetString", name, [&] {
        const auto found = m_texts.find(ToName(name));
        const bool isKnown = found != m_texts.end();
        const HRESULT handedOut =
            HandOut(value, [&] { return isKnown ? Bstr(std::wstring_view(found->second)) : Bstr(); });
        return isKnown || FAILED(handedOut) ? handedOut : kElementNotFound;
    });
}

HRESULT DriverPropertyBag::HasNone(const char* method, BSTR name)
{
    return Answer(method, name, [] { return kElementNotFound; });
}

HRESULT DriverPropertyBag::Deny(const char* method, BSTR name)
{
    return Answer(method, name, [] { return E_ACCESSDENIED; });
}
} // namespace host::pipeline
