#pragma once

#include <map>
#include <string>
#include <string_view>

#include "base/utility/bstr.h"
#include "base/utility/comobject.h"
#include "base/utility/variant.h"
#include "host/pipeline/calltrace.h"
#include "platform/filterpipeline.h"
#include "platform/printerextension.h"

namespace host::pipeline
{
/// The pipeline's properties, of the types that the platform documents. Filled before the job starts, read by
/// the filter on any thread.
class PipelinePropertyBag final : public base::utility::ComObject<IPrintPipelinePropertyBag>
{
public:
    explicit PipelinePropertyBag(CallTrace& trace) : m_trace(trace) {}

    void SetText(const wchar_t* name, const std::wstring& text)
    {
        m_values.try_emplace(name, base::utility::Bstr(std::wstring_view(text)));
    }
    /// Shares the object.
    void SetObject(const wchar_t* name, IUnknown* object) { m_values.try_emplace(name, object); }
    /// The handle is stored as a bare VT_BYREF, as the platform passes handles. The caller keeps it.
    void SetHandle(const wchar_t* name, HANDLE handle);
    void SetNumber(const wchar_t* name, ULONG number);

    STDMETHODIMP AddProperty(const wchar_t* name, const VARIANT* value) override;
    /// The element-not-found code for a name that the bag does not have.
    STDMETHODIMP GetProperty(const wchar_t* name, VARIANT* value) override;
    STDMETHODIMP_(BOOL) DeleteProperty(const wchar_t* name) override;

private:
    CallTrace& m_trace;
    std::map<std::wstring, base::utility::Variant, std::less<>> m_values;
};

/// The printer driver's properties: strings and integers.
class DriverPropertyBag final : public base::utility::ComObject<IPrinterPropertyBag>
{
public:
    explicit DriverPropertyBag(CallTrace& trace) : m_trace(trace) {}

    void SetText(const wchar_t* name, const std::wstring& text) { m_texts[name] = text; }
    void SetNumber(const wchar_t* name, LONG number) { m_numbers[name] = number; }

    // Filters do not use scripting.
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }

    // Getters fail for absent names, and setters always: the bag is read-only at run time.
    STDMETHODIMP GetInt32(BSTR name, LONG* value) override;
    STDMETHODIMP GetString(BSTR name, BSTR* value) override;
    STDMETHODIMP GetBool(BSTR name, BOOL*) override { return HasNone("GetBool", name); }
    STDMETHODIMP GetBytes(BSTR name, DWORD*, BYTE**) override { return HasNone("GetBytes", name); }
    STDMETHODIMP GetReadStream(BSTR name, IStream**) override { return HasNone("GetReadStream", name); }
    STDMETHODIMP SetInt32(BSTR name, LONG) override { return Deny("SetInt32", name); }
    STDMETHODIMP SetString(BSTR name, BSTR) override { return Deny("SetString", name); }
    STDMETHODIMP SetBool(BSTR name, BOOL) override { return Deny("SetBool", name); }
    STDMETHODIMP SetBytes(BSTR name, DWORD, BYTE*) override { return Deny("SetBytes", name); }
    STDMETHODIMP GetWriteStream(BSTR name, IStream**) override { return Deny("GetWriteStream", name); }

private:
    template <typename Body>
    HRESULT Answer(const char* method, BSTR name, Body&& body);
    HRESULT HasNone(const char* method, BSTR name);
    HRESULT Deny(const char* method, BSTR name);

    CallTrace& m_trace;
    std::map<std::wstring, std::wstring, std::less<>> m_texts;
    std::map<std::wstring, LONG, std::less<>> m_numbers;
};
} // namespace host::pipeline
