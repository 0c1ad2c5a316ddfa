#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string_view>

namespace host::opc
{
struct FileCloser
{
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

/// A file that only this process can open, for reading and writing.
struct TemporaryFile
{
    UniqueFile file;
    std::filesystem::path path;
};

/// A name beside `target` that no file has.
std::filesystem::path NameTemporaryFile(const std::filesystem::path& target);

/// Gives a closed temporary file its name, in place of an older file. Without success the older file stays,
/// the temporary one goes, and FileError is thrown.
void MoveIntoPlace(const std::filesystem::path& temporary, const std::filesystem::path& target);

/// A file that appears complete or not at all: it is written under a temporary name beside the target, which
/// Commit renames. Without Commit an existing file stays as it was, and no temporary file is left.
class ReplacedFile
{
public:
    /// Throws FileError, naming the target, as all below: here when the target is a folder or no regular
    /// file, and when no file can be created beside it.
    explicit ReplacedFile(std::filesystem::path target);
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;
    ~ReplacedFile();

    void Write(std::string_view bytes);
    void Commit();

private:
    [[noreturn]] void Fail() const;

    std::filesystem::path m_target;
    TemporaryFile m_temporary;
};

/// A temporary file for contents that do not fit in memory. The system deletes it when it is closed, even if
/// the process is killed. May be used on several threads at once.
class SpillFile
{
public:
    /// Creates a file of a new name beside `target`. Throws FileError as ReplacedFile does.
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
