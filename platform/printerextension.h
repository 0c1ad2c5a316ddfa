#pragma once

#include "platform/win32.h"

#ifdef __printerextension_h__
#error "The platform's own printerextension.h declares the same interfaces: include one of the two"
#endif

// The property bag of a printer driver, as the platform documents it: MinGW-w64 has no printerextension.h,
// and with the Windows SDK this serves, too. Names are real BSTRs; a getter fails for a property that is
// absent; GetBytes hands out memory for CoTaskMemFree.
struct DECLSPEC_UUID("FEA77364-DF95-4A23-A905-019B79A8E481") IPrinterPropertyBag : public IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE GetBool(BSTR name, BOOL* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetBool(BSTR name, BOOL value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetInt32(BSTR name, LONG* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetInt32(BSTR name, LONG value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetString(BSTR name, BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetString(BSTR name, BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetBytes(BSTR name, DWORD* count, BYTE** value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetBytes(BSTR name, DWORD count, BYTE* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetReadStream(BSTR name, IStream** value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetWriteStream(BSTR name, IStream** value) = 0;
};
__CRT_UUID_DECL(
    IPrinterPropertyBag, 0xFEA77364, 0xDF95, 0x4A23, 0xA9, 0x05, 0x01, 0x9B, 0x79, 0xA8, 0xE4, 0x81)
