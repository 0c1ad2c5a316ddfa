#include "host/opc/spillfile.h"

#include <cstdio>
#include <string>

#include "host/opc/files.h"

namespace host::opc
{
namespace
{
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
