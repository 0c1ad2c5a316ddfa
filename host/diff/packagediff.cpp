#include "host/diff/packagediff.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>

#include "host/console.h"
#include "host/diff/markupdiff.h"
#include "host/opc/packageerror.h"
#include "host/paths.h"
#include "host/text.h"
#include "host/xml/markuptext.h"

namespace host::diff
{
using opc::Package;
using opc::PartName;

namespace
{
std::string ReadPart(const Package& package, const PartName& part)
{
    try
    {
        return package.Read(part);
    }
    catch (const opc::PackageError& fault)
    {
        throw std::runtime_error(ToUtf8Path(package.Path()) + ": " + fault.what());
    }
}

std::string DescribeBytes(std::string_view one, std::string_view other)
{
    const auto parted = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    return std::to_string(one.size()) + " bytes -> " + std::to_string(other.size()) +
           " bytes, first different at offset " + std::to_string(parted.first - one.begin());
}

/// What a set holds, by what counts when sets are compared, and as it is shown.
using Entries = std::map<std::string, std::string>;

/// What only one of two sets has, the first of either; empty for equal ones.
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
        entries.emplace(opc::ToLowerAscii(subject) + " " + contentType, subject + " " + contentType);
    }
    return entries;
}

Entries ListRelationships(const Package& package, const PartName& source)
{
    Entries entries;
    const opc::Relationships relationships = package.RelationshipsOf(source);
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

/// Of parts that are not the same byte by byte.
std::optional<std::string> FindContentDifference(const Package& onePackage,
                                                 const Package& otherPackage,
                                                 const PartName& part)
{
    const std::string one = ReadPart(onePackage, part);
    const std::string other = ReadPart(otherPackage, part);
    if (one == other)
    {
        return std::nullopt;
    }
    try
    {
        if (const auto source = part.RelationshipsSource())
        {
            return FindSetDifference(ListRelationships(onePackage, *source),
                                     ListRelationships(otherPackage, *source));
        }
        return IsXml(onePackage, part) && IsXml(otherPackage, part) ? FindMarkupDifference(one, other)
                                                                    : DescribeBytes(one, other);
    }
    catch (const xml::MarkupError& fault)
    {
        return DescribeBytes(one, other) + "; one " + ToOneLine(fault.what());
    }
    catch (const opc::PackageError& fault)
    {
        return DescribeBytes(one, other) + "; " + ToOneLine(fault.what());
    }
}

PartDifference ToDifference(const std::string& part, const std::optional<std::string>& what)
{
    return {part, what ? PartState::Changed : PartState::Identical, what.value_or("")};
}
} // namespace

const char* NameOf(PartState state)
{
    switch (state)
    {
    case PartState::Identical:
        return "identical";
    case PartState::Changed:
        return "changed";
    case PartState::Added:
        return "added";
    case PartState::Removed:
        return "removed";
    }
    return "";
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
