#pragma once

#include <algorithm>
#include <string>
#include <utility>

#include "base/utility/comobject.h"
#include "host/pipeline/filtermodule.h"
#include "host/pipeline/printticketlibrary.h"
#include "host/ticketservice/ticketservice.h"
#include "platform/win32.h"
#include "tests/host/testpackages.h"

#include <prntvpt.h>

namespace host::ticketservice
{
/// The built prntvpt.dll, to which the platform's functions lead as they do in the host.
struct OfflineService
{
    /// Loaded once for all tests.
    static const OfflineService& Get();

    pipeline::PrintTicketLibrary functions{OFFLINE_SERVICE_PATH};
    pipeline::LoadedLibrary library{OFFLINE_SERVICE_PATH};
    SetDeviceDescriptionFunction describe =
        library.Find<decltype(SetDeviceDescription)>("SetDeviceDescription");
    GetOpenProviderCountFunction countOpen =
        library.Find<decltype(GetOpenProviderCount)>("GetOpenProviderCount");
};

/// A stream over bytes that hands out and takes only a few at a time, and answers `result`.
class ShortStream : public base::utility::ComObject<IStream>
{
public:
    explicit ShortStream(std::string bytes = {}) : content(std::move(bytes)) { ++alive; }

    STDMETHODIMP Read(void* buffer, ULONG size, ULONG* count) override
    {
        constexpr std::size_t mostAtOnce = 100;
        *count = static_cast<ULONG>(
            content.copy(static_cast<char*>(buffer), std::min<std::size_t>(size, mostAtOnce), position));
        position += *count;
        return result;
    }
    STDMETHODIMP Write(const void* buffer, ULONG size, ULONG* count) override
    {
        constexpr ULONG mostAtOnce = 70;
        *count = std::min(size, mostAtOnce);
        content.replace(position, *count, static_cast<const char*>(buffer), *count);
        position += *count;
        return result;
    }
    STDMETHODIMP Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    STDMETHODIMP SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    STDMETHODIMP CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override
    {
        return E_FAIL;
    }
    STDMETHODIMP Commit(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Revert() override { return E_NOTIMPL; }
    STDMETHODIMP LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Clone(IStream**) override { return E_NOTIMPL; }

    std::string content;
    std::size_t position = 0;
    HRESULT result = S_OK;

    static inline int alive = 0;

private:
    ~ShortStream() override { --alive; }
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

/// A provider for the length of a test; the destructor closes it.
struct OpenProvider
{
    OpenProvider()
    {
        OfflineService::Get();
        EXPECT_EQ(PTOpenProvider(L"Any printer", 1, &handle), S_OK);
    }
    OpenProvider(const OpenProvider&) = delete;
    OpenProvider& operator=(const OpenProvider&) = delete;
    ~OpenProvider() { EXPECT_EQ(PTCloseProvider(handle), S_OK); }

    HPTPROVIDER handle = nullptr;
};

/// The device of tests/data/devices/uneven.xml for the length of a test.
struct UnevenDevice
{
    UnevenDevice() { EXPECT_EQ(Describe(ReadData("devices/uneven.xml")).hr, S_OK); }
    UnevenDevice(const UnevenDevice&) = delete;
    UnevenDevice& operator=(const UnevenDevice&) = delete;
    ~UnevenDevice() { EXPECT_EQ(OfflineService::Get().describe(nullptr, 0, nullptr), S_OK); }
};

/// A file of tests/data as the service writes it: without the line breaks that make it readable.
std::string ReadJoined(const std::string& name);
} // namespace host::ticketservice
