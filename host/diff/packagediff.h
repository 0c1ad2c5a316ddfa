#pragma once

#include <functional>
#include <string>

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
} // namespace host::diff
