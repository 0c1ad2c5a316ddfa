#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "host/pipeline/filtermodule.h"

namespace host::pipeline
{
/// The print ticket provider of this process: the offline one or the platform's own. It must be loaded before
/// the filter module, whose import then binds to it; the host's own print ticket calls go through it too. One
/// at a time.
class PrintTicketLibrary
{
public:
    /// `offline` names the offline library; the platform's own is loaded without. Throws std::runtime_error.
    explicit PrintTicketLibrary(const std::optional<std::filesystem::path>& offline);
    PrintTicketLibrary(const PrintTicketLibrary&) = delete;
    PrintTicketLibrary& operator=(const PrintTicketLibrary&) = delete;
    ~PrintTicketLibrary();

    /// Sets the device of the offline library, from the bytes of a print capabilities document.
    /// Throws std::runtime_error with the reason when it cannot be used.
    void DescribeDevice(std::string_view capabilities) const;

private:
    LoadedLibrary m_library;
};
} // namespace host::pipeline
