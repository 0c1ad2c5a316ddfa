#include "host/ticketservice/providers.h"

#include <string_view>
#include <utility>

#include "base/logging/errors.h"
#include "host/ticketservice/resource.h"

namespace host::ticketservice
{
using base::exception::ThrowIfFailed;

namespace
{
/// The built-in description, a resource of this library; lent for the library's life.
std::string_view FindBuiltInDescription()
{
    HMODULE library = nullptr;
    constexpr DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&FindBuiltInDescription), &library))
    {
        ThrowIfFailed(HRESULT_FROM_WIN32(GetLastError()));
    }
    HRSRC resource = FindResourceW(library, MAKEINTRESOURCEW(IDR_BUILT_IN_DEVICE), RT_RCDATA);
    HGLOBAL loaded = resource == nullptr ? nullptr : LoadResource(library, resource);
    if (loaded == nullptr)
    {
        ThrowIfFailed(HRESULT_FROM_WIN32(GetLastError()));
    }
    return {static_cast<const char*>(LockResource(loaded)), SizeofResource(library, resource)};
}
} // namespace

HPTPROVIDER Providers::Open()
{
    const std::scoped_lock lock(m_lock);
    if (!m_device)
    {
        m_device = std::make_shared<const Device>(FindBuiltInDescription());
    }
    // A number, not an address, since an address that was freed is given out again.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the platform's handle type is a pointer.
    const auto handle = reinterpret_cast<HPTPROVIDER>(++m_lastNumber);
    m_providers.emplace(handle, Provider{GetCurrentThreadId(), m_device});
    return handle;
}

HRESULT Providers::Close(HPTPROVIDER handle)
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

std::shared_ptr<const Device> Providers::GetDevice(HPTPROVIDER handle) const
{
    const std::scoped_lock lock(m_lock);
    const auto provider = m_providers.find(handle);
    ThrowIfFailed(Check(provider));
    return provider->second.device;
}

ULONG Providers::Count() const
{
    const std::scoped_lock lock(m_lock);
    return static_cast<ULONG>(m_providers.size());
}

void Providers::SetDevice(std::shared_ptr<const Device> device)
{
    const std::scoped_lock lock(m_lock);
    m_device = std::move(device);
}

HRESULT Providers::Check(ProviderMap::const_iterator provider) const
{
    if (provider == m_providers.end())
    {
        return E_HANDLE;
    }
    return provider->second.threadId == GetCurrentThreadId() ? S_OK : E_INVALIDARG;
}
} // namespace host::ticketservice
