#include "host/opc/temporaryfile.h"

#include <random>
#include <string>
#include <system_error>
#include <utility>

#include "host/opc/files.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace host::opc
{
namespace
{
/// What happens to a temporary file when it is closed.
enum class OnClose
{
    /// The system deletes it, even if the process is killed.
    Delete,
    Keep
};

/// Null when the file exists or cannot be created.
std::FILE* OpenNew(const std::filesystem::path& path, OnClose onClose)
{
#ifdef _WIN32
    const int deletion = onClose == OnClose::Delete ? _O_TEMPORARY : 0;
    const int mode = _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | deletion;
    int descriptor = -1;
    _wsopen_s(&descriptor, path.c_str(), mode, _SH_DENYRW, _S_IREAD | _S_IWRITE);
    return descriptor < 0 ? nullptr : _fdopen(descriptor, "w+b");
#else
    const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
    {
        return nullptr;
    }
    if (onClose == OnClose::Delete)
    {
        unlink(path.c_str());
    }
    return fdopen(descriptor, "w+b");
#endif
}

/// Whether a name stands for something like a terminal, which the file system does not tell in Wine.
bool IsDevice(const std::filesystem::path& path)
{
#ifdef _WIN32
    int descriptor = -1;
    _wsopen_s(&descriptor, path.c_str(), _O_RDONLY | _O_BINARY, _SH_DENYNO, _S_IREAD);
    const bool isDevice = descriptor >= 0 && _isatty(descriptor) != 0;
    if (descriptor >= 0)
    {
        _close(descriptor);
    }
    return isDevice;
#else
    return std::filesystem::exists(path) && !std::filesystem::is_regular_file(path);
#endif
}

void RequirePlaceForAFile(const std::filesystem::path& target)
{
    std::error_code unknown;
    const std::filesystem::file_type type = std::filesystem::status(target, unknown).type();
    if (type == std::filesystem::file_type::directory)
    {
        throw FileError(target, "is a folder");
    }
    if (IsDevice(target))
    {
        throw FileError(target, "is not a file that can be replaced");
    }
}
TemporaryFile CreateTemporaryFile(const std::filesystem::path& target, OnClose onClose)
{
    RequirePlaceForAFile(target);
    constexpr int attempts = 8;
    for (int attempt = 0; attempt < attempts; ++attempt)
    {
        const std::filesystem::path path = NameTemporaryFile(target);
        if (UniqueFile file(OpenNew(path, onClose)); file != nullptr)
        {
            return {std::move(file), path};
        }
    }
    const auto folder = target.parent_path();
    std::error_code unknown;
    throw FileError(target,
                    folder.empty() || std::filesystem::exists(folder, unknown) ? "cannot be created"
                                                                               : "there is no such folder");
}

int SeekTo(std::FILE* file, std::uint64_t offset)
{
#ifdef _WIN32
    return _fseeki64(file, static_cast<long long>(offset), SEEK_SET);
#else
    return fseeko(file, static_cast<off_t>(offset), SEEK_SET);
#endif
}
} // namespace

std::filesystem::path NameTemporaryFile(const std::filesystem::path& target)
{
    std::filesystem::path name = target;
    name += ".";
    name += std::to_string(std::random_device()());
    name += ".tmp";
    return name;
}

void MoveIntoPlace(const std::filesystem::path& temporary, const std::filesystem::path& target)
{
    std::error_code failure;
    std::filesystem::rename(temporary, target, failure);
    if (failure)
    {
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
        throw FileError(target, "cannot be written: " + failure.message());
    }
}

ReplacedFile::ReplacedFile(std::filesystem::path target)
    : m_target(std::move(target)), m_temporary(CreateTemporaryFile(m_target, OnClose::Keep))
{
}

ReplacedFile::~ReplacedFile()
{
    m_temporary.file.reset();
    std::error_code ignored;
    std::filesystem::remove(m_temporary.path, ignored);
}

void ReplacedFile::Write(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), m_temporary.file.get()) != bytes.size())
    {
        Fail();
    }
}

void ReplacedFile::Commit()
{
    // The disk may be full only now.
    const bool isWritten = std::fflush(m_temporary.file.get()) == 0;
    m_temporary.file.reset();
    if (!isWritten)
    {
        Fail();
    }
    MoveIntoPlace(m_temporary.path, m_target);
}

void ReplacedFile::Fail() const
{
    throw FileError(m_target, "cannot be written");
}

SpillFile::SpillFile(const std::filesystem::path& target)
    : m_target(target), m_temporary(CreateTemporaryFile(target, OnClose::Delete))
{
}

std::uint64_t SpillFile::Append(std::string_view bytes)
{
    const std::lock_guard lock(m_mutex);
    Seek(m_end);
    if (std::fwrite(bytes.data(), 1, bytes.size(), m_temporary.file.get()) != bytes.size())
    {
        Fail("written");
    }
    const std::uint64_t offset = m_end;
    m_end += bytes.size();
    return offset;
}

void SpillFile::Read(std::uint64_t offset, char* buffer, std::size_t size)
{
    const std::lock_guard lock(m_mutex);
    Seek(offset);
    if (std::fread(buffer, 1, size, m_temporary.file.get()) != size)
    {
        Fail("read");
    }
}

void SpillFile::Seek(std::uint64_t offset)
{
    if (SeekTo(m_temporary.file.get(), offset) != 0)
    {
        Fail("positioned");
    }
}

void SpillFile::Fail(const char* what) const
{
    throw FileError(m_target, std::string("the temporary file beside it cannot be ") + what);
}
} // namespace host::opc
