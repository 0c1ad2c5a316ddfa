#include "host/ticketservice/currentdevice.h"

#include <utility>

#include "base/logging/errors.h"
#include "host/tickets/ticketreader.h"
#include "host/ticketservice/resource.h"
#include "platform/win32.h"

namespace host::ticketservice
{
namespace
{
using base::exception::ThrowIfFailed;

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

std::shared_ptr<const Device> CurrentDevice::Get()
{
    const std::scoped_lock lock(m_lock);
    if (!m_device)
    {
        m_device = ReadDevice(FindBuiltInDescription());
    }
    return m_device;
}

void CurrentDevice::Set(std::shared_ptr<const Device> device)
{
    const std::scoped_lock lock(m_lock);
    m_device = std::move(device);
}

std::shared_ptr<const Device> ReadDevice(std::string_view xml)
{
    return std::make_shared<const Device>(tickets::ReadDocument(xml, tickets::Kind::PrintCapabilities));
}
} // namespace host::ticketservice
