#pragma once

#include <filesystem>
#include <future>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/opc/contenttypes.h"
#include "host/opc/package.h"
#include "host/opc/partcontent.h"
#include "host/opc/partname.h"
#include "host/opc/relationships.h"
#include "host/opc/zipwriter.h"

namespace host::opc
{
/// A new package made of an existing one and of changes to it. What is not changed is copied as it is stored,
/// item by item in the same order; a changed part takes the place of its first item; new parts follow.
///
/// Changes are collected, the contents compressed in a temporary file beside the target, and written by
/// Commit. A large content is compressed on a thread of its own, one at a time; a failure there is thrown by
/// the next change or Commit. A writer that is destroyed without Commit, or whose Commit throws, leaves the
/// target as it was and no other file. Without a target there is nothing to commit; the temporary file lies
/// where the system keeps such files. Called on one thread. What it throws for the target is a FileError that
/// names it.
class PackageWriter
{
public:
    /// `source` must outlive the writer. Throws FileError when the target is the source's own file or when
    /// there can be no file of its name. New parts are compressed at a level from 0 to 9.
    PackageWriter(const Package& source,
                  const std::optional<std::filesystem::path>& target,
                  int compression = kUsualCompression);
    PackageWriter(const PackageWriter&) = delete;
    PackageWriter& operator=(const PackageWriter&) = delete;

    /// An empty content to be filled and given to ReplacePart or AddPart.
    PartContent NewContent();

    /// The same, filled.
    PartContent NewContent(std::string_view bytes);

    /// Throws PackageError when there is no such part.
    void ReplacePart(const PartName& part, PartContent content);

    /// Throws PackageError when there is such a part already. A relationship is added separately.
    void AddPart(const PartName& part, std::string_view contentType, PartContent content);

    /// Removes a part with its own relationships, its content type and all relationships to it. Throws
    /// PackageError when there is no such part.
    void RemovePart(const PartName& part);

    /// The relationships of a part, or of the package, to be changed in place; they belong to the writer.
    Relationships& EditRelationships(const PartName& source);

    /// Writes the package. To be called once; throws FileError for the target, PackageError for the source,
    /// and what the listener throws to stop it.
    void Commit(const WriteListener& listener = [](double) {});

private:
    using Content = std::shared_ptr<const CompressedContent>;

    bool Exists(const PartName& part) const;
    void Require(const PartName& part) const;
    void Drop(const PartName& part);
    void DropRelationshipsToRemovedParts();
    void StoreRelationships();
    Content Keep(PartContent content);
    void FinishCompressing();
    void WriteItems();

    const Package& m_source;
    std::shared_ptr<SpillFile> m_spill;
    int m_compression;
    // The large content that is being compressed; not valid for none.
    std::future<void> m_compressing;
    std::optional<ZipWriter> m_archive;
    // A change without content removes the part.
    std::map<PartName, Content> m_changes;
    std::vector<PartName> m_added;
    std::set<PartName> m_removed;
    std::map<PartName, Relationships> m_relationships;
    ContentTypes m_contentTypes;
    bool m_typesChanged = false;
};
} // namespace host::opc
