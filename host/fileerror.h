#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace host
{
/// A file that cannot be read or written. The text names it and says why: "out.xps: cannot be written".
class FileError : public std::runtime_error
{
public:
    FileError(const std::filesystem::path& file, const std::string& reason)
        : std::runtime_error(ToText(file) + ": " + reason), m_reason(reason)
    {
    }

    /// The text without the file, for where that has been named already.
    const std::string& Reason() const noexcept { return m_reason; }

private:
    static std::string ToText(const std::filesystem::path& file)
    {
        const std::u8string text = file.u8string();
        return {text.begin(), text.end()};
    }

    std::string m_reason;
};
} // namespace host
