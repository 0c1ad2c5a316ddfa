#include "host/opc/replacedfile.h"

#include <cstdio>
#include <system_error>
#include <utility>

#include "host/opc/files.h"

namespace host::opc
{
ReplacedFile::ReplacedFile(std::filesystem::path target)
    : m_target(std::move(target)), m_temporary(opc::CreateTemporaryFile(m_target, opc::OnClose::Keep))
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
} // namespace host::opc
