#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace host::opc
{
/// Paths as the user types and reads them: UTF-8 on every system.
std::string ToUtf8Path(const std::filesystem::path& path);
std::filesystem::path FromUtf8Path(std::string_view text);

/// A file that cannot be read or written. The text names it and says why: "out.xps: cannot be written".
class FileError : public std::runtime_error
{
public:
    FileError(const std::filesystem::path& file, const std::string& reason)
        : std::runtime_error(ToUtf8Path(file) + ": " + reason), m_reason(reason)
    {
    }

    /// The text without the file, for a message that has named it already.
    const std::string& Reason() const noexcept { return m_reason; }

private:
    std::string m_reason;
};

/// A package that cannot be used. The text names the package, the part at fault if there is one, and the
/// reason: "in.xps: /Documents/1/FixedDocument.fdoc: is missing from the package".
class PackageError : public FileError
{
public:
    using FileError::FileError;
    PackageError(const std::filesystem::path& package, const std::string& part, const std::string& reason)
        : FileError(package, part + ": " + reason)
    {
    }
};

/// Why there is nothing to read under a name; empty for a file.
std::optional<std::string> DescribeMissing(const std::filesystem::path& file);

/// Throws FileError when the file cannot be read.
std::string ReadFileBytes(const std::filesystem::path& file);
} // namespace host::opc
