#include "host/ticketservice/providers.h"

#include <utility>

#include "base/logging/errors.h"

namespace host::ticketservice
{
HPTPROVIDER OpenProviders::Open(std::shared_ptr<const Device> device)
{
    const std::scoped_lock lock(m_lock);
    // A number, not an address, since an address that was freed is given out again.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the platform's handle type is a pointer.
    const auto handle = reinterpret_cast<HPTPROVIDER>(++m_lastNumber);
    m_providers.emplace(handle, Provider{GetCurrentThreadId(), std::move(device)});
    return handle;
}

HRESULT OpenProviders::Close(HPTPROVIDER handle)
{
    const std::scoped_lock lock(m_lock);
    const auto provider = m_providers.find(handle);
    const HRESULT checked = Check(provider);
    if (SUCCEEDED(checked))
    {
        m_providers.erase(provider);
    }
    return checked;
}

std::shared_ptr<const Device> OpenProviders::GetDevice(HPTPROVIDER handle) const
{
    const std::scoped_lock lock(m_lock);
    const auto provider = m_providers.find(handle);
    base::exception::ThrowIfFailed(Check(provider));
    return provider->second.device;
}

ULONG OpenProviders::Count() const
{
    const std::scoped_lock lock(m_lock);
    return static_cast<ULONG>(m_providers.size());
}

HRESULT OpenProviders::Check(ProviderMap::const_iterator provider) const
{
    if (provider == m_providers.end())
    {
        return E_HANDLE;
    }
    return provider->second.threadId == GetCurrentThreadId() ? S_OK : E_INVALIDARG;
}
} // namespace host::ticketservice
