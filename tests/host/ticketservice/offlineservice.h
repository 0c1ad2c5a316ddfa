#pragma once

#include <string>

#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "platform/msxml6.h"
#include "platform/win32.h"

#include <prntvpt.h>

#include "ticketservice/ticketservice.h"

namespace host::ticketservice
{
/// The built prntvpt.dll, loaded by its full path, and its functions as importers bind to them.
struct OfflineService
{
    HMODULE library;
    decltype(&PTOpenProvider) open;
    decltype(&PTCloseProvider) close;
    decltype(&PTGetPrintCapabilities) getCapabilities;
    decltype(&PTMergeAndValidatePrintTicket) merge;
    SetDeviceDescriptionFunction setDescription;
    GetOpenProviderCountFunction countOpen;

    /// Loaded once for all tests.
    static const OfflineService& Get();
};

/// A provider for the length of a test; the destructor closes it.
class OpenProvider
{
public:
    OpenProvider();
    OpenProvider(const OpenProvider&) = delete;
    OpenProvider& operator=(const OpenProvider&) = delete;
    ~OpenProvider();

    HPTPROVIDER Get() const { return m_handle; }

private:
    HPTPROVIDER m_handle = nullptr;
};

/// A stream over bytes that hands out and takes only a few at a time.
class ShortStream : public base::utility::ComObject<IStream>
{
public:
    explicit ShortStream(std::string bytes = {}) : content(std::move(bytes)) { ++liveCount; }

    STDMETHODIMP Read(void* buffer, ULONG size, ULONG* count) override;
    STDMETHODIMP Write(const void* buffer, ULONG size, ULONG* count) override;
    STDMETHODIMP Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    STDMETHODIMP SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    STDMETHODIMP CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP Commit(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Revert() override { return E_NOTIMPL; }
    STDMETHODIMP LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Clone(IStream**) override { return E_NOTIMPL; }

    std::string content;
    std::size_t position = 0;
    HRESULT readResult = S_OK;
    HRESULT writeResult = S_OK;

    static inline int liveCount = 0;

private:
    ~ShortStream() override { --liveCount; }
};

/// What a call gave: its code, the text of its error message, and the document that it wrote.
struct Answer
{
    HRESULT hr = E_UNEXPECTED;
    std::string message;
    std::string document;
};

/// The delta may be null.
Answer Merge(const std::string& base, const std::string* delta, EPrintTicketScope scope);
/// The ticket may be null.
Answer GetCapabilities(const std::string* ticket);
/// E_PRINTCAPABILITIES_FORMAT and a message when refused.
Answer Describe(const std::string& description);

/// A file of tests/data.
std::string ReadData(const std::string& name);

/// A document as XPath sees it, with the prefixes psf, psk, xsi and xsd.
class QueriedDocument
{
public:
    explicit QueriedDocument(const std::string& xml);

    /// The count of selected nodes.
    int Count(const std::string& xpath) const;
    /// The text of the first one, or a note that there is none.
    std::string Text(const std::string& xpath) const;

private:
    base::utility::ComPtr<IXMLDOMNodeList> Select(const std::string& xpath) const;

    base::utility::ComPtr<IXMLDOMDocument2> m_pDocument;
};
} // namespace host::ticketservice
