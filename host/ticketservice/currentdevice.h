#pragma once

#include <memory>
#include <mutex>
#include <string_view>

#include "host/ticketservice/device.h"

namespace host::ticketservice
{
/// The device that new providers are opened for: the described one, or the built-in one as long as none is.
class CurrentDevice
{
public:
    /// Reads the built-in description on first use.
    std::shared_ptr<const Device> Get();

    /// Null restores the built-in device.
    void Set(std::shared_ptr<const Device> device);

private:
    std::mutex m_lock;
    std::shared_ptr<const Device> m_device;
};

/// From the bytes of a print capabilities document. Throws xml::MarkupError with the reason against it.
std::shared_ptr<const Device> ReadDevice(std::string_view xml);
} // namespace host::ticketservice
