#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/opc/contenttypes.h"
#include "host/opc/partname.h"
#include "host/opc/relationships.h"
#include "host/opc/ziparchive.h"

namespace host::opc
{
/// The items of a part's content: one, or those of the pieces of an interleaved part in order.
struct StoredPart
{
    /// The item's name without the segment of a piece, as the producer wrote it.
    std::string itemName;
    std::vector<std::size_t> items;
};

/// An Open Packaging Conventions package open for reading. Contents are read on demand and not kept.
///
/// Used on one thread. A PackageWriter that builds on a package must not outlive it.
class Package
{
public:
    /// Opens a package and reads its directory and content types. Throws PackageError for a file that is not
    /// a package, for two parts of equal names, for an interleaved part that lacks a piece, and for item
    /// names that step out of the package.
    explicit Package(const std::filesystem::path& path);

    bool Has(const PartName& part) const { return m_parts.contains(part); }

    /// The largest part that is read into memory. The largest real pages have about 15 MB of markup.
    static constexpr std::uint64_t kPartLimit = 64ULL << 20;

    /// The decompressed content. Throws PackageError when the package has no such part or cannot give it, and
    /// for one of more than `limit` bytes.
    std::string Read(const PartName& part, std::uint64_t limit = kPartLimit) const;

    /// The first `wanted` bytes of the content, or all of a shorter one. Throws as Read does.
    std::string ReadStart(const PartName& part, std::size_t wanted) const;

    /// Empty when the package declares no type for the part.
    std::string_view ContentTypeOf(const PartName& part) const { return m_contentTypes.Find(part); }

    /// Empty when the source has none. Throws PackageError when they cannot be read.
    Relationships RelationshipsOf(const PartName& source) const;

    const std::filesystem::path& Path() const noexcept { return m_archive.Path(); }
    const ZipArchive& Archive() const noexcept { return m_archive; }
    const std::map<PartName, StoredPart>& Parts() const noexcept { return m_parts; }
    const ContentTypes& Types() const noexcept { return m_contentTypes; }
    const StoredPart& ContentTypesStream() const noexcept { return m_contentTypesStream; }

private:
    const StoredPart& Find(const PartName& part) const;
    std::string ReadItems(const StoredPart& stored, std::uint64_t limit) const;
    void ReadContentTypes();

    ZipArchive m_archive;
    std::map<PartName, StoredPart> m_parts;
    StoredPart m_contentTypesStream;
    ContentTypes m_contentTypes;
};
} // namespace host::opc
