#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/opc/package.h"

namespace host::diff
{
enum class PartState
{
    Identical,
    Changed,
    Added,
    Removed
};

const char* NameOf(PartState state);

/// How a part differs between two packages.
struct PartDifference
{
    std::string part;
    PartState state;
    /// Where a changed part differs first, and how, on one line; empty for others.
    std::string what;
};

/// Compares two packages part by part, in the order of the parts' names, which are compared as OPC does, and
/// by what the parts hold, however it is stored. Content types and relationships are sets, and relationships
/// are compared by their targets and not by their ids; other XML is compared as XML, and everything else, or
/// XML that cannot be read, byte by byte. ZIP items that are no parts are ignored. At any time at most one
/// part of each package is in memory.
///
/// Throws opc::PackageError for a part that cannot be decompressed.
void ComparePackages(const opc::Package& one,
                     const opc::Package& other,
                     const std::function<void(const PartDifference&)>& onPart);

/// Where two documents of XML differ first, and how, on one line: "/FixedPage/Path[2]/@Data: M 0,0 -> M 1,0";
/// empty when they are equal. Throws xml::MarkupError when one of them cannot be read.
///
/// The encoding, the prefixes, the order and quotes of attributes, comments, processing instructions and
/// blank text make no difference. Names in attributes of the Print Schema, such as "psk:ISOA4", are compared
/// by namespace too.
std::optional<std::string> FindMarkupDifference(std::string_view one, std::string_view other);
} // namespace host::diff
