#include "host/opc/ziparchive.h"

#include <array>
#include <fstream>
#include <string_view>
#include <utility>

#include "host/opc/files.h"

namespace host::opc
{
namespace
{
// ZIP_ER_TRUNCATED_ZIP of libzip 1.11. Older versions say ZIP_ER_NOZIP.
constexpr int kTruncatedZip = 35;

std::string DescribeOpeningFault(const std::filesystem::path& path, int code)
{
    if (auto missing = DescribeMissing(path))
    {
        return *std::move(missing);
    }
    if (code != ZIP_ER_NOZIP && code != ZIP_ER_INCONS && code != kTruncatedZip)
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

/// Gives an item's content to `take` piece by piece, until that returns false. The result is the library's
/// error code.
template <typename Take>
int ZipArchive::ReadPieces(std::size_t index, zip_flags_t flags, Take&& take) const
{
    const std::unique_ptr<zip_file_t, FileCloser> file(zip_fopen_index(m_archive.get(), index, flags));
    if (file == nullptr)
    {
        return zip_error_code_zip(zip_get_error(m_archive.get()));
    }
    std::array<char, 65536> piece;
    while (const zip_int64_t count = zip_fread(file.get(), piece.data(), piece.size()))
    {
        if (count < 0)
        {
            return zip_error_code_zip(zip_file_get_error(file.get()));
        }
        if (!take(std::string_view(piece.data(), static_cast<std::size_t>(count))))
        {
            break;
        }
    }
    return ZIP_ER_OK;
}

void ZipArchive::Append(std::size_t index, std::string& content, std::uint64_t limit) const
{
    const ZipItem& item = m_items.at(index);
    // Grows with the data that is there, not with the size in the directory.
    std::uint64_t total = 0;
    const int code = ReadPieces(index, 0, [&](std::string_view piece) {
        total += piece.size();
        if (total > item.size)
        {
            throw PackageError(m_path, item.name, "is longer than its directory entry says");
        }
        if (content.size() + piece.size() > limit)
        {
            throw PackageError(m_path, item.name, "is longer than " + std::to_string(limit) + " bytes");
        }
        content.append(piece);
        return true;
    });
    if (code != ZIP_ER_OK)
    {
        FailToRead(item, code);
    }
    if (total != item.size)
    {
        throw PackageError(m_path, item.name, "is shorter than its directory entry says");
    }
}

void ZipArchive::AppendStart(std::size_t index, std::string& content, std::size_t wanted) const
{
    const int code = ReadPieces(index, 0, [&](std::string_view piece) {
        content.append(piece.substr(0, wanted - content.size()));
        return content.size() < wanted;
    });
    if (code != ZIP_ER_OK)
    {
        FailToRead(m_items.at(index), code);
    }
}

void ZipArchive::FailToRead(const ZipItem& item, int code) const
{
    throw PackageError(m_path, item.name, DescribeReadingFault(item, code));
}

void ZipArchive::RequireReadable() const
{
    for (std::size_t index = 0; index < m_items.size(); ++index)
    {
        if (ReadPieces(index, ZIP_FL_COMPRESSED, [](std::string_view) { return true; }) != ZIP_ER_OK)
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
