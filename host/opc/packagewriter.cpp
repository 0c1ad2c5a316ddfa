#include "host/opc/packagewriter.h"

#include <algorithm>
#include <utility>

#include "host/opc/files.h"

namespace host::opc
{
namespace
{
constexpr std::string_view kRelationshipsType = "application/vnd.openxmlformats-package.relationships+xml";

/// In bytes. For a smaller content a thread costs more than it saves.
constexpr std::uint64_t kLargeContent = 65536;
} // namespace

PackageWriter::PackageWriter(const Package& source,
                             const std::optional<std::filesystem::path>& target,
                             int compression)
    : m_source(source), m_compression(compression), m_contentTypes(source.Types())
{
    if (target && std::filesystem::exists(*target) && std::filesystem::equivalent(*target, source.Path()))
    {
        throw FileError(*target, "the output would replace the input");
    }
    // New contents are kept beside the target, or in the folder of temporary files.
    const std::filesystem::path neighbour =
        target ? *target : std::filesystem::temp_directory_path() / "package";
    m_spill = std::make_shared<SpillFile>(neighbour);
    if (target)
    {
        m_archive.emplace(*target);
    }
}

PartContent PackageWriter::NewContent()
{
    return PartContent(m_spill);
}

PartContent PackageWriter::NewContent(std::string_view bytes)
{
    PartContent content = NewContent();
    content.Append(bytes);
    return content;
}

void PackageWriter::ReplacePart(const PartName& part, PartContent content)
{
    Require(part);
    m_changes[part] = Keep(std::move(content));
}

void PackageWriter::AddPart(const PartName& part, std::string_view contentType, PartContent content)
{
    if (Exists(part))
    {
        throw PackageError(m_source.Path(), part.Text(), "is in the package already");
    }
    m_changes[part] = Keep(std::move(content));
    m_removed.erase(part);
    if (!m_source.Has(part))
    {
        m_added.push_back(part);
    }
    m_contentTypes.Set(part, contentType);
    m_typesChanged = true;
}

void PackageWriter::RemovePart(const PartName& part)
{
    Require(part);
    Drop(part);
    m_removed.insert(part);
    m_relationships.erase(part);
    if (Exists(part.RelationshipsPart()))
    {
        Drop(part.RelationshipsPart());
    }
}

Relationships& PackageWriter::EditRelationships(const PartName& source)
{
    const auto known = m_relationships.find(source);
    if (known != m_relationships.end())
    {
        return known->second;
    }
    // Those of a removed part were removed with it.
    return m_relationships
        .emplace(source,
                 Exists(source.RelationshipsPart()) ? m_source.RelationshipsOf(source)
                                                    : Relationships(source))
        .first->second;
}

void PackageWriter::Commit(const WriteListener& listener)
{
    DropRelationshipsToRemovedParts();
    StoreRelationships();
    WriteItems();
    try
    {
        m_archive.value().Close(listener);
    }
    catch (const FileError&)
    {
        // The ZIP library does not report which item it could not copy.
        m_source.Archive().RequireReadable();
        throw;
    }
}

bool PackageWriter::Exists(const PartName& part) const
{
    const auto change = m_changes.find(part);
    return change != m_changes.end() ? change->second != nullptr : m_source.Has(part);
}

PackageWriter::Content PackageWriter::Keep(PartContent content)
{
    const auto compressed = std::make_shared<CompressedContent>(CompressedContent{NewContent()});
    if (!m_archive)
    {
        return compressed;
    }
    const bool isLarge = content.Size() >= kLargeContent;
    auto compress = [source = std::move(content), compressed, level = m_compression] {
        *compressed = Compress(source, std::move(compressed->deflated), level);
    };
    if (isLarge)
    {
        FinishCompressing();
        m_compressing = std::async(std::launch::async, std::move(compress));
    }
    else
    {
        compress();
    }
    return compressed;
}

void PackageWriter::FinishCompressing()
{
    if (m_compressing.valid())
    {
        m_compressing.get();
    }
}

void PackageWriter::Require(const PartName& part) const
{
    if (!Exists(part))
    {
        throw PackageError(m_source.Path(), part.Text(), "is missing from the package");
    }
}

void PackageWriter::Drop(const PartName& part)
{
    m_changes[part] = {};
    std::erase(m_added, part);
    m_contentTypes.Remove(part);
    m_typesChanged = true;
}

void PackageWriter::DropRelationshipsToRemovedParts()
{
    if (m_removed.empty())
    {
        return;
    }
    for (auto& [source, relationships] : m_relationships)
    {
        relationships.RemoveTargets(m_removed);
    }
    for (const auto& [part, stored] : m_source.Parts())
    {
        const auto source = part.RelationshipsSource();
        if (source.has_value() && Exists(part) && !m_relationships.contains(*source))
        {
            Relationships relationships = m_source.RelationshipsOf(*source);
            if (relationships.RemoveTargets(m_removed))
            {
                m_relationships.emplace(*source, std::move(relationships));
            }
        }
    }
}

void PackageWriter::StoreRelationships()
{
    for (const auto& [source, relationships] : m_relationships)
    {
        const PartName part = source.RelationshipsPart();
        if (!relationships.All().empty())
        {
            PartContent content = NewContent(relationships.Serialize());
            Exists(part) ? ReplacePart(part, std::move(content))
                         : AddPart(part, kRelationshipsType, std::move(content));
        }
        else if (Exists(part))
        {
            Drop(part);
        }
    }
}

void PackageWriter::WriteItems()
{
    struct NewItem
    {
        std::string name;
        Content content;
    };
    // What becomes of items of the source, by their index; those without content are left out.
    std::map<std::size_t, NewItem> changed;
    const auto change = [&](const StoredPart& stored, const Content& content) {
        for (const std::size_t item : stored.items)
        {
            changed[item];
        }
        changed[*std::min_element(stored.items.begin(), stored.items.end())] = {stored.itemName, content};
    };
    for (const auto& [part, content] : m_changes)
    {
        const auto stored = m_source.Parts().find(part);
        if (stored != m_source.Parts().end())
        {
            change(stored->second, content);
        }
    }
    if (m_typesChanged)
    {
        change(m_source.ContentTypesStream(), Keep(NewContent(m_contentTypes.Serialize())));
    }
    FinishCompressing();

    ZipWriter& writer = m_archive.value();
    const auto& items = m_source.Archive().Items();
    for (std::size_t index = 0; index < items.size(); ++index)
    {
        const auto found = changed.find(index);
        if (found == changed.end())
        {
            writer.Copy(m_source.Archive(), index);
        }
        else if (found->second.content != nullptr)
        {
            writer.Add(found->second.name, found->second.content, items[index].modified);
        }
    }
    // The source's time and not the current one, so that the same job gives the same bytes.
    const std::time_t modified = items[m_source.ContentTypesStream().items.front()].modified;
    for (const PartName& part : m_added)
    {
        writer.Add(part.Text().substr(1), m_changes.at(part), modified);
    }
}
} // namespace host::opc
