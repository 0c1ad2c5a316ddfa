#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string_view>

#include "host/opc/temporaryfile.h"

namespace host::opc
{
/// A temporary file for contents that do not fit in memory. The system deletes it when it is closed, even if
/// the process is killed. May be used on several threads at once.
class SpillFile
{
public:
    /// Creates a file of a new name beside `target`. Throws FileError as CreateTemporaryFile does.
    explicit SpillFile(const std::filesystem::path& target);

    /// Writes at the end and gives the offset of the first byte. Throws FileError when the disk is full.
    std::uint64_t Append(std::string_view bytes);

    /// Reads `size` bytes, which must have been written. Throws FileError on failure.
    void Read(std::uint64_t offset, char* buffer, std::size_t size);

private:
    void Seek(std::uint64_t offset);
    [[noreturn]] void Fail(const char* what) const;

    std::filesystem::path m_target;
    std::mutex m_mutex;
    TemporaryFile m_temporary;
    std::uint64_t m_end = 0;
};
} // namespace host::opc
