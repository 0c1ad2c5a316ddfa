#include "host/opc/spillfile.h"

#include <random>
#include <string>

#include "host/opc/packageerror.h"

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
std::filesystem::path NewName(const std::filesystem::path& target)
{
    std::filesystem::path name = target;
    name += ".";
    name += std::to_string(std::random_device()());
    name += ".tmp";
    return name;
}

/// Null when the file exists or cannot be created.
std::FILE* OpenNew(const std::filesystem::path& path)
{
#ifdef _WIN32
    constexpr int mode = _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_TEMPORARY;
    int descriptor = -1;
    _wsopen_s(&descriptor, path.c_str(), mode, _SH_DENYRW, _S_IREAD | _S_IWRITE);
    return descriptor < 0 ? nullptr : _fdopen(descriptor, "w+b");
#else
    const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
    {
        return nullptr;
    }
    unlink(path.c_str());
    return fdopen(descriptor, "w+b");
#endif
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

SpillFile::SpillFile(const std::filesystem::path& target)
{
    constexpr int attempts = 8;
    for (int attempt = 0; attempt < attempts && m_file == nullptr; ++attempt)
    {
        m_file.reset(OpenNew(NewName(target)));
    }
    if (m_file == nullptr)
    {
        throw PackageError("no temporary file can be created beside the output");
    }
}

std::uint64_t SpillFile::Append(std::string_view bytes)
{
    Seek(m_end);
    if (std::fwrite(bytes.data(), 1, bytes.size(), m_file.get()) != bytes.size())
    {
        throw PackageError("the temporary file beside the output cannot be written");
    }
    const std::uint64_t offset = m_end;
    m_end += bytes.size();
    return offset;
}

void SpillFile::Read(std::uint64_t offset, char* buffer, std::size_t size)
{
    Seek(offset);
    if (std::fread(buffer, 1, size, m_file.get()) != size)
    {
        throw PackageError("the temporary file beside the output cannot be read");
    }
}

void SpillFile::Seek(std::uint64_t offset)
{
    if (SeekTo(m_file.get(), offset) != 0)
    {
        throw PackageError("the temporary file beside the output cannot be positioned");
    }
}
} // namespace host::opc
