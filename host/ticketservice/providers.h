#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "platform/win32.h"

#include <prntvpt.h>

#include "host/ticketservice/device.h"

namespace host::ticketservice
{
/// The providers that are open, of all threads, and the device that new ones are opened for. A handle belongs
/// to the thread that opened it and is dead once closed: its value does not come back.
class Providers
{
public:
    /// Opens one for the calling thread. It keeps the device that it was opened for.
    HPTPROVIDER Open();

    /// S_OK; E_HANDLE for a handle that is not open, E_INVALIDARG on another thread than the one that opened
    /// it.
    [[nodiscard]] HRESULT Close(HPTPROVIDER handle);

    /// The device of an open provider. Throws HresultError with the codes of Close.
    std::shared_ptr<const Device> GetDevice(HPTPROVIDER handle) const;

    ULONG Count() const;

    /// The device of providers that are opened from now on; null for the built-in one.
    void SetDevice(std::shared_ptr<const Device> device);

private:
    struct Provider
    {
        DWORD threadId;
        std::shared_ptr<const Device> device;
    };
    using ProviderMap = std::map<HPTPROVIDER, Provider>;

    HRESULT Check(ProviderMap::const_iterator provider) const;

    mutable std::mutex m_lock;
    std::uintptr_t m_lastNumber = 0;
    ProviderMap m_providers;
    // The built-in one is read on first use.
    std::shared_ptr<const Device> m_device;
};
} // namespace host::ticketservice
