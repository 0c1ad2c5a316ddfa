#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "host/paths.h"

namespace host
{
/// A file that cannot be read or written. The text names it and says why: "out.xps: cannot be written".
class FileError : public std::runtime_error
{
public:
    FileError(const std::filesystem::path& file, const std::string& reason)
        : std::runtime_error(ToUtf8Path(file) + ": " + reason), m_reason(reason)
    {
    }

    /// The text without the file, for where that has been named already.
    const std::string& Reason() const noexcept { return m_reason; }

private:
    std::string m_reason;
};
} // namespace host
