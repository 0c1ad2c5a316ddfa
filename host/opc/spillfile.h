#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>

namespace host::opc
{
/// A temporary file for contents that are too many to be held in memory. The system itself deletes it when it
/// is closed, even if the process is killed.
class SpillFile
{
public:
    /// Creates a file of a new name beside `target`. Throws PackageError when that fails.
    explicit SpillFile(const std::filesystem::path& target);

    /// Writes at the end and gives the offset of the first byte. Throws PackageError when the disk is full.
    std::uint64_t Append(std::string_view bytes);

    /// Reads `size` bytes, which must have been written. Throws PackageError on failure.
    void Read(std::uint64_t offset, char* buffer, std::size_t size);

private:
    struct Closer
    {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };

    void Seek(std::uint64_t offset);

    std::unique_ptr<std::FILE, Closer> m_file;
    std::uint64_t m_end = 0;
};
} // namespace host::opc
