#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>

namespace host::opc
{
struct FileCloser
{
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

/// What happens to a temporary file when it is closed.
enum class OnClose
{
    /// The system deletes it, even if the process is killed.
    Delete,
    Keep
};

/// A file that only this process can open, for reading and writing.
struct TemporaryFile
{
    UniqueFile file;
    std::filesystem::path path;
};

/// A name beside `target` that no file has.
std::filesystem::path NameTemporaryFile(const std::filesystem::path& target);

/// Creates a file with an unused name beside `target`. Throws FileError, naming the target, when the target
/// is a folder or no regular file, and when no file can be created beside it.
TemporaryFile CreateTemporaryFile(const std::filesystem::path& target, OnClose onClose);

/// Gives a closed temporary file its name, in place of an older file. Without success the older file stays,
/// the temporary one goes, and FileError is thrown.
void MoveIntoPlace(const std::filesystem::path& temporary, const std::filesystem::path& target);
} // namespace host::opc
