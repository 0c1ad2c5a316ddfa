#include "host/pipeline/propertybags.h"

#include <string_view>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "host/pipeline/partanswers.h"

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

void PipelinePropertyBag::SetText(const wchar_t* name, const std::wstring& text)
{
    VARIANT* const value = m_values[name].Receive();
    value->bstrVal = Bstr(std::wstring_view(text)).Detach();
    value->vt = VT_BSTR;
}

void PipelinePropertyBag::SetObject(const wchar_t* name, IUnknown* object)
{
    VARIANT* const value = m_values[name].Receive();
    value->punkVal = base::utility::ComPtr<IUnknown>(object).Detach();
    value->vt = VT_UNKNOWN;
}

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

STDMETHODIMP DriverPropertyBag::GetInt32(BSTR name, LONG* value)
{
    return m_trace.Answer("IPrinterPropertyBag::GetInt32", ToSubject(name), [&] {
        if (value == nullptr)
        {
            return E_POINTER;
        }
        const auto found = m_numbers.find(ToName(name));
        if (found == m_numbers.end())
        {
            return kElementNotFound;
        }
        *value = found->second;
        return S_OK;
    });
}

STDMETHODIMP DriverPropertyBag::GetString(BSTR name, BSTR* value)
{
    return m_trace.Answer("IPrinterPropertyBag::GetString", ToSubject(name), [&] {
        if (value == nullptr)
        {
            return E_POINTER;
        }
        *value = nullptr;
        const auto found = m_texts.find(ToName(name));
        if (found == m_texts.end())
        {
            return kElementNotFound;
        }
        *value = Bstr(std::wstring_view(found->second)).Detach();
        return S_OK;
    });
}

STDMETHODIMP DriverPropertyBag::GetBool(BSTR name, BOOL*)
{
    return Refuse("GetBool", name, kElementNotFound);
}

STDMETHODIMP DriverPropertyBag::SetBool(BSTR name, BOOL)
{
    return Refuse("SetBool", name, E_ACCESSDENIED);
}

STDMETHODIMP DriverPropertyBag::SetInt32(BSTR name, LONG)
{
    return Refuse("SetInt32", name, E_ACCESSDENIED);
}

STDMETHODIMP DriverPropertyBag::SetString(BSTR name, BSTR)
{
    return Refuse("SetString", name, E_ACCESSDENIED);
}

STDMETHODIMP DriverPropertyBag::GetBytes(BSTR name, DWORD*, BYTE**)
{
    return Refuse("GetBytes", name, kElementNotFound);
}

STDMETHODIMP DriverPropertyBag::SetBytes(BSTR name, DWORD, BYTE*)
{
    return Refuse("SetBytes", name, E_ACCESSDENIED);
}

STDMETHODIMP DriverPropertyBag::GetReadStream(BSTR name, IStream**)
{
    return Refuse("GetReadStream", name, kElementNotFound);
}

STDMETHODIMP DriverPropertyBag::GetWriteStream(BSTR name, IStream**)
{
    return Refuse("GetWriteStream", name, E_ACCESSDENIED);
}

HRESULT DriverPropertyBag::Refuse(const char* method, BSTR name, HRESULT result)
{
    return m_trace.Answer(
        std::string("IPrinterPropertyBag::") + method, ToSubject(name), [result] { return result; });
}
} // namespace host::pipeline
