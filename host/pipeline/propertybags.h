#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
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

    void SetText(const wchar_t* name, const std::wstring& text);
    /// Shares the object.
    void SetObject(const wchar_t* name, IUnknown* object);
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
    void SetNumber(const wchar_t* name, std::int32_t number) { m_numbers[name] = number; }

    // Filters do not use scripting.
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }

    // Getters fail for absent names, and setters always: the bag is read-only at run time.
    STDMETHODIMP GetBool(BSTR name, BOOL* value) override;
    STDMETHODIMP SetBool(BSTR name, BOOL value) override;
    STDMETHODIMP GetInt32(BSTR name, LONG* value) override;
    STDMETHODIMP SetInt32(BSTR name, LONG value) override;
    STDMETHODIMP GetString(BSTR name, BSTR* value) override;
    STDMETHODIMP SetString(BSTR name, BSTR value) override;
    STDMETHODIMP GetBytes(BSTR name, DWORD* count, BYTE** value) override;
    STDMETHODIMP SetBytes(BSTR name, DWORD count, BYTE* value) override;
    STDMETHODIMP GetReadStream(BSTR name, IStream** value) override;
    STDMETHODIMP GetWriteStream(BSTR name, IStream** value) override;

private:
    HRESULT Refuse(const char* method, BSTR name, HRESULT result);

    CallTrace& m_trace;
    std::map<std::wstring, std::wstring, std::less<>> m_texts;
    std::map<std::wstring, std::int32_t, std::less<>> m_numbers;
};
} // namespace host::pipeline
