#include "host/diff/packagediff.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "host/opc/relationships.h"
#include "host/xml/markup.h"
#include "host/xml/reader.h"
#include "host/xml/text.h"

namespace host::diff
{
using opc::Package;
using opc::PartName;

namespace
{
std::string DescribeBytes(std::string_view one, std::string_view other)
{
    const auto parted = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    return std::to_string(one.size()) + " bytes -> " + std::to_string(other.size()) +
           " bytes, first different at offset " + std::to_string(parted.first - one.begin());
}

/// The members of a set: what is compared, and how it is shown.
using Entries = std::map<std::string, std::string>;

/// The first member that only one set has, for either set; empty for equal sets.
std::optional<std::string> FindSetDifference(const Entries& one, const Entries& other)
{
    const auto firstOnlyIn = [](const Entries& from, const Entries& without) {
        const auto found = std::find_if(
            from.begin(), from.end(), [&](const auto& entry) { return !without.contains(entry.first); });
        return found == from.end() ? std::string() : found->second;
    };
    const std::string onlyInOne = firstOnlyIn(one, other);
    const std::string onlyInOther = firstOnlyIn(other, one);
    if (onlyInOne.empty() && onlyInOther.empty())
    {
        return std::nullopt;
    }
    return (onlyInOne.empty() ? "nothing" : onlyInOne) + " -> " +
           (onlyInOther.empty() ? "nothing" : onlyInOther);
}

Entries ListContentTypes(const Package& package)
{
    Entries entries;
    for (const auto& [subject, contentType] : package.Types().List())
    {
        const std::string type = " " + contentType;
        entries.emplace(opc::ToLowerAscii(subject) + type, subject + type);
    }
    return entries;
}

Entries ListRelationships(const PartName& source, std::string_view markup)
{
    Entries entries;
    const auto relationships = opc::Relationships::Parse(source, markup);
    for (const opc::Relationship& relationship : relationships.All())
    {
        const bool isInternal = relationship.mode == opc::TargetMode::Internal;
        const auto part = isInternal ? source.TryResolve(relationship.target) : std::nullopt;
        const std::string target = part ? part->Text() : relationship.target;
        const std::string role = (isInternal ? " as " : ", outside, as ") + relationship.type;
        entries.emplace((part ? opc::ToLowerAscii(target) : target) + role, target + role);
    }
    return entries;
}

bool IsXml(const Package& package, const PartName& part)
{
    const std::string type = opc::ToLowerAscii(package.ContentTypeOf(part));
    const std::string_view essence = std::string_view(type).substr(0, type.find(';'));
    return essence.ends_with("+xml") || essence.ends_with("/xml");
}

/// Compares the contents of a part that both packages have.
std::optional<std::string> FindContentDifference(const Package& onePackage,
                                                 const Package& otherPackage,
                                                 const PartName& part)
{
    const std::string one = onePackage.Read(part);
    const std::string other = otherPackage.Read(part);
    if (one == other)
    {
        return std::nullopt;
    }
    try
    {
        if (const auto source = part.RelationshipsSource())
        {
            return FindSetDifference(ListRelationships(*source, one), ListRelationships(*source, other));
        }
        return IsXml(onePackage, part) && IsXml(otherPackage, part) ? FindMarkupDifference(one, other)
                                                                    : DescribeBytes(one, other);
    }
    catch (const xml::MarkupError&)
    {
        const std::string ofOne = xml::FindMarkupFault(one);
        const std::string fault = ofOne.empty() ? "B " + xml::FindMarkupFault(other) : "A " + ofOne;
        return DescribeBytes(one, other) + "; " + xml::ToOneLine(fault);
    }
}

PartDifference ToDifference(const std::string& part, const std::optional<std::string>& what)
{
    return {part, what ? PartState::Changed : PartState::Identical, what.value_or("")};
}
} // namespace

const char* NameOf(PartState state)
{
    constexpr std::array names = {"identical", "changed", "added", "removed"};
    return names.at(static_cast<std::size_t>(state));
}

void ComparePackages(const Package& one,
                     const Package& other,
                     const std::function<void(const PartDifference&)>& onPart)
{
    onPart(ToDifference("[Content_Types].xml",
                        FindSetDifference(ListContentTypes(one), ListContentTypes(other))));
    std::set<PartName> parts;
    for (const Package* const package : {&one, &other})
    {
        for (const auto& [part, stored] : package->Parts())
        {
            parts.insert(part);
        }
    }
    for (const PartName& part : parts)
    {
        if (!one.Has(part) || !other.Has(part))
        {
            onPart({part.Text(), one.Has(part) ? PartState::Removed : PartState::Added, ""});
            continue;
        }
        onPart(ToDifference(part.Text(), FindContentDifference(one, other, part)));
    }
}
} // namespace host::diff
