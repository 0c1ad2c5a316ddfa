#include "host/opc/ziparchive.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string_view>
#include <utility>

#include "host/opc/files.h"
#include "host/opc/packageerror.h"

namespace host::opc
{
namespace
{
std::string DescribeOpeningFault(const std::filesystem::path& path, int code)
{
    if (auto missing = DescribeMissing(path))
    {
        return *std::move(missing);
    }
    if (code != ZIP_ER_NOZIP && code != ZIP_ER_INCONS)
    {
        return "cannot be opened as a ZIP archive: " + DescribeZipError(code);
    }
    std::ifstream file(path, std::ios::binary);
    const bool startsAsZip = file.get() == 'P' && file.get() == 'K';
    return startsAsZip ? "is cut off or damaged" : "is not a ZIP archive";
}

std::string DescribeReadingFault(const ZipItem& item, int code)
{
    if (code == ZIP_ER_COMPNOTSUPP)
    {
        return "is compressed with method " + std::to_string(item.method) + ", which is not supported";
    }
    if (code == ZIP_ER_NOPASSWD || code == ZIP_ER_ENCRNOTSUPP)
    {
        return "is encrypted";
    }
    return "cannot be decompressed: " + DescribeZipError(code);
}
} // namespace

ZipArchive::ZipArchive(const std::filesystem::path& path) : m_path(path)
{
    int code = 0;
    m_archive.reset(zip_open(ToUtf8Path(path).c_str(), ZIP_RDONLY, &code));
    if (m_archive == nullptr)
    {
        throw PackageError(m_path, DescribeOpeningFault(m_path, code));
    }
    ReadDirectory();
}

void ZipArchive::ReadDirectory()
{
    const zip_int64_t count = zip_get_num_entries(m_archive.get(), 0);
    for (zip_uint64_t index = 0; index < static_cast<zip_uint64_t>(count); ++index)
    {
        zip_stat_t entry;
        if (zip_stat_index(m_archive.get(), index, 0, &entry) != 0)
        {
            const int code = zip_error_code_zip(zip_get_error(m_archive.get()));
            throw PackageError(m_path, DescribeOpeningFault(m_path, code));
        }
        m_items.push_back(
            {entry.name, entry.size, entry.comp_size, entry.crc, entry.comp_method, entry.mtime});
    }
}

ZipArchive::OpenItem ZipArchive::Open(std::size_t index) const
{
    OpenItem file(zip_fopen_index(m_archive.get(), index, 0));
    if (file == nullptr)
    {
        FailToRead(m_items.at(index), zip_error_code_zip(zip_get_error(m_archive.get())));
    }
    return file;
}

void ZipArchive::Append(std::size_t index, std::string& content, std::uint64_t limit) const
{
    const ZipItem& item = m_items.at(index);
    const OpenItem file = Open(index);
    // Grows with the data that is there, not with the size in the directory.
    std::array<char, 65536> chunk;
    std::uint64_t total = 0;
    zip_int64_t read = 0;
    while ((read = zip_fread(file.get(), chunk.data(), chunk.size())) > 0)
    {
        total += static_cast<std::uint64_t>(read);
        if (total > item.size)
        {
            throw PackageError(m_path, item.name, "is longer than its directory entry says");
        }
        if (content.size() + static_cast<std::uint64_t>(read) > limit)
        {
            throw PackageError(m_path, item.name, "is longer than " + std::to_string(limit) + " bytes");
        }
        content.append(chunk.data(), static_cast<std::size_t>(read));
    }
    if (read < 0)
    {
        FailToRead(item, zip_error_code_zip(zip_file_get_error(file.get())));
    }
    if (total != item.size)
    {
        throw PackageError(m_path, item.name, "is shorter than its directory entry says");
    }
}

void ZipArchive::AppendStart(std::size_t index, std::string& content, std::size_t wanted) const
{
    const OpenItem file = Open(index);
    std::array<char, 4096> chunk;
    while (content.size() < wanted)
    {
        const std::size_t missing = wanted - content.size();
        const zip_int64_t read = zip_fread(file.get(), chunk.data(), std::min(chunk.size(), missing));
        if (read < 0)
        {
            FailToRead(m_items.at(index), zip_error_code_zip(zip_file_get_error(file.get())));
        }
        if (read == 0)
        {
            return;
        }
        content.append(chunk.data(), static_cast<std::size_t>(read));
    }
}

void ZipArchive::FailToRead(const ZipItem& item, int code) const
{
    throw PackageError(m_path, item.name, DescribeReadingFault(item, code));
}

void ZipArchive::RequireReadable() const
{
    std::array<char, 65536> chunk;
    for (zip_uint64_t index = 0; index < m_items.size(); ++index)
    {
        const OpenItem file(zip_fopen_index(m_archive.get(), index, ZIP_FL_COMPRESSED));
        zip_int64_t read = file == nullptr ? -1 : 1;
        while (read > 0)
        {
            read = zip_fread(file.get(), chunk.data(), chunk.size());
        }
        if (read < 0)
        {
            throw PackageError(m_path, m_items[index].name, "cannot be read from the archive");
        }
    }
}

std::string DescribeZipError(int code)
{
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    std::string text = zip_error_strerror(&error);
    zip_error_fini(&error);
    return text;
}
} // namespace host::opc
