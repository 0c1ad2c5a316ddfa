#include "host/opc/package.h"

#include <optional>

#include "host/opc/files.h"
#include "host/xml/markup.h"

namespace host::opc
{
namespace
{
constexpr std::string_view kContentTypesName = "[content_types].xml";

bool IsContentTypesName(std::string_view logicalName)
{
    const std::size_t start = logicalName.find_first_not_of("/\\");
    return start <= 1 && ToLowerAscii(logicalName.substr(start)) == kContentTypesName;
}

/// Collects the items of one part, which may be in the archive in any order.
class ItemCollector
{
public:
    explicit ItemCollector(const std::filesystem::path& package) : m_package(package) {}

    bool IsEmpty() const noexcept { return m_indices.empty(); }

    void Add(const ItemRole& role, std::size_t index)
    {
        const bool isWhole = !role.piece.has_value();
        const std::uint32_t number = role.piece.value_or(0);
        const bool mixes = !IsEmpty() && (isWhole || m_isWhole);
        if (mixes || !m_indices.emplace(number, index).second)
        {
            throw PackageError(m_package, std::string(role.logicalName), "is in the package twice");
        }
        m_stored.itemName = role.logicalName;
        m_isWhole = isWhole;
        if (isWhole || role.isLastPiece)
        {
            if (m_lastNumber.has_value())
            {
                throw PackageError(m_package, m_stored.itemName, "has two last pieces");
            }
            m_lastNumber = number;
        }
    }

    /// The items in the order of their numbers, when they are complete.
    StoredPart Finish()
    {
        const std::uint64_t highest = m_indices.rbegin()->first;
        if (m_lastNumber != highest || m_indices.size() != highest + 1)
        {
            throw PackageError(m_package, m_stored.itemName, "lacks one of its pieces");
        }
        for (const auto& [number, index] : m_indices)
        {
            m_stored.items.push_back(index);
        }
        return std::move(m_stored);
    }

private:
    const std::filesystem::path& m_package;
    StoredPart m_stored;
    std::map<std::uint32_t, std::size_t> m_indices;
    std::optional<std::uint32_t> m_lastNumber;
    bool m_isWhole = false;
};

/// Reads a part's markup; a fault in it names the part.
template <typename Action>
auto ReadingPart(const std::filesystem::path& package, const std::string& name, Action&& act)
{
    try
    {
        return act();
    }
    catch (const xml::MarkupError& fault)
    {
        throw PackageError(package, name, fault.what());
    }
}
} // namespace

Package::Package(const std::filesystem::path& path) : m_archive(path)
{
    std::map<PartName, ItemCollector> parts;
    ItemCollector contentTypes(Path());
    const auto& items = m_archive.Items();
    for (std::size_t index = 0; index < items.size(); ++index)
    {
        if (StepsUp(items[index].name))
        {
            throw PackageError(Path(), items[index].name, "leads out of the package");
        }
        const ItemRole role = ParseItemName(items[index].name);
        if (IsContentTypesName(role.logicalName))
        {
            contentTypes.Add(role, index);
        }
        else if (const auto name = PartName::FromItem(role.logicalName))
        {
            parts.try_emplace(*name, Path()).first->second.Add(role, index);
        }
    }
    for (auto& [name, collector] : parts)
    {
        m_parts.emplace(name, collector.Finish());
    }
    if (contentTypes.IsEmpty())
    {
        throw PackageError(Path(), "/[Content_Types].xml", "is missing from the package");
    }
    m_contentTypesStream = contentTypes.Finish();
    ReadContentTypes();
}

std::string Package::Read(const PartName& part, std::uint64_t limit) const
{
    return ReadItems(Find(part), limit);
}

std::string Package::ReadStart(const PartName& part, std::size_t wanted) const
{
    std::string start;
    for (const std::size_t item : Find(part).items)
    {
        if (start.size() < wanted)
        {
            m_archive.AppendStart(item, start, wanted);
        }
    }
    return start;
}

const StoredPart& Package::Find(const PartName& part) const
{
    const auto found = m_parts.find(part);
    if (found == m_parts.end())
    {
        throw PackageError(Path(), part.Text(), "is missing from the package");
    }
    return found->second;
}

Relationships Package::RelationshipsOf(const PartName& source) const
{
    const PartName part = source.RelationshipsPart();
    if (!Has(part))
    {
        return Relationships(source);
    }
    const std::string markup = Read(part);
    return ReadingPart(Path(), part.Text(), [&] { return Relationships::Parse(source, markup); });
}

std::string Package::ReadItems(const StoredPart& stored, std::uint64_t limit) const
{
    std::string content;
    for (const std::size_t item : stored.items)
    {
        m_archive.Append(item, content, limit);
    }
    return content;
}

void Package::ReadContentTypes()
{
    const std::string markup = ReadItems(m_contentTypesStream, kPartLimit);
    m_contentTypes =
        ReadingPart(Path(), "/" + m_contentTypesStream.itemName, [&] { return ContentTypes::Parse(markup); });
}
} // namespace host::opc
