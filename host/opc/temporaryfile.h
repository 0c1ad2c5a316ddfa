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

/// What becomes of a temporary file when it is closed.
enum class OnClose
{
    /// The system itself deletes it, even if the process is killed.
    Delete,
    Keep
};

/// A file of this process alone, open for reading and writing.
struct TemporaryFile
{
    UniqueFile file;
    std::filesystem::path path;
};

/// Creates a file beside `target` under a name that no file had. Throws FileError, naming the target, when
/// the target is a folder or anything else that is no file, and when there can be no file beside it.
TemporaryFile CreateTemporaryFile(const std::filesystem::path& target, OnClose onClose);
} // namespace host::opc
