#include "host/replacedfile.h"

#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include "host/paths.h"

namespace host
{
ReplacedFile::ReplacedFile(std::filesystem::path target) : m_target(std::move(target)), m_temporary(m_target)
{
    m_temporary += "." + std::to_string(std::random_device()()) + ".tmp";
    m_stream.open(m_temporary, std::ios::binary | std::ios::trunc);
    if (!m_stream)
    {
        Fail();
    }
}

ReplacedFile::~ReplacedFile()
{
    m_stream.close();
    std::error_code ignored;
    std::filesystem::remove(m_temporary, ignored);
}

void ReplacedFile::Write(std::string_view bytes)
{
    if (!m_stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size())))
    {
        Fail();
    }
}

void ReplacedFile::Commit()
{
    m_stream.close();
    std::error_code failure;
    if (m_stream)
    {
        std::filesystem::rename(m_temporary, m_target, failure);
    }
    if (!m_stream || failure)
    {
        Fail();
    }
}

void ReplacedFile::Fail() const
{
    throw std::runtime_error(ToUtf8Path(m_target) + ": cannot be written");
}
} // namespace host
