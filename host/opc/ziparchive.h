#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <zip.h>

namespace host::opc
{
/// One entry of an archive, as its central directory describes it. The sizes are claims until the item has
/// been read.
struct ZipItem
{
    std::string name;
    std::uint64_t size;
    std::uint64_t storedSize;
    std::uint32_t crc;
    std::uint16_t method;
    std::time_t modified;
};

/// A ZIP archive open for reading. The items keep the order of the central directory, and their indices are
/// the library's.
class ZipArchive
{
public:
    /// Throws PackageError when there is no such file or when it is not an archive.
    explicit ZipArchive(const std::filesystem::path& path);

    const std::filesystem::path& Path() const noexcept { return m_path; }
    const std::vector<ZipItem>& Items() const noexcept { return m_items; }

    /// Appends an item's decompressed content to `content`. Throws PackageError, naming the item, when it
    /// cannot be decompressed, differs from what the directory says about it, or would make `content`
    /// longer than `limit` bytes.
    void Append(std::size_t index, std::string& content, std::uint64_t limit) const;

    /// Appends what an item begins with until `content` has `wanted` bytes, or all of a shorter item. Throws
    /// PackageError, naming the item, when it cannot be decompressed.
    void AppendStart(std::size_t index, std::string& content, std::size_t wanted) const;

    /// Reads the stored bytes of every item. Throws PackageError, naming the first one that cannot be read.
    void RequireReadable() const;

    /// Lent for copying items into another archive, which must be closed first.
    zip_t* Handle() const noexcept { return m_archive.get(); }

private:
    struct Closer
    {
        void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
    };

    struct FileCloser
    {
        void operator()(zip_file_t* file) const noexcept { zip_fclose(file); }
    };

    void ReadDirectory();
    template <typename Take>
    int ReadPieces(std::size_t index, zip_flags_t flags, Take&& take) const;
    [[noreturn]] void FailToRead(const ZipItem& item, int code) const;

    std::filesystem::path m_path;
    std::unique_ptr<zip_t, Closer> m_archive;
    std::vector<ZipItem> m_items;
};

/// The library's own words for an error code.
std::string DescribeZipError(int code);
} // namespace host::opc
