#pragma once

#include <cstddef>
#include <ctime>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include <zip.h>

#include "host/opc/partcontent.h"
#include "host/opc/ziparchive.h"

namespace host::opc
{
/// Called from time to time with the fraction of an archive that has been written.
using WriteListener = std::function<void(double fraction)>;

/// Writes a ZIP archive. Nothing is on disk before Close, which writes a temporary file and renames it; an
/// archive that is not closed leaves nothing.
class ZipWriter
{
public:
    /// Throws FileError, as all below, when the target cannot be an archive. An existing file is replaced by
    /// Close.
    explicit ZipWriter(const std::filesystem::path& target);

    /// Takes an item over as it is stored, without decompressing it. The source must stay open until Close.
    void Copy(const ZipArchive& source, std::size_t index);

    void Add(const std::string& name, std::shared_ptr<const CompressedContent> content, std::time_t modified);

    /// Throws FileError when the archive cannot be written, and what the listener throws to stop the
    /// writing; the target is then as it was.
    void Close(const WriteListener& listener);

private:
    struct Discarder
    {
        void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
    };
    struct SourceFreer
    {
        void operator()(zip_source_t* source) const noexcept { zip_source_free(source); }
    };
    using Source = std::unique_ptr<zip_source_t, SourceFreer>;

    zip_uint64_t AddItem(const std::string& name, Source source);
    [[noreturn]] void Fail(const std::string& name) const;

    std::filesystem::path m_target;
    std::filesystem::path m_temporary;
    std::unique_ptr<zip_t, Discarder> m_archive;
};
} // namespace host::opc
