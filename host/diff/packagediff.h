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

/// What became of a part from one package to another.
struct PartDifference
{
    std::string part;
    PartState state;
    /// Where a changed part differs first, and how, on one line; empty for others.
    std::string what;
};

/// Compares two packages part by part, in the order of the parts' names, which are compared as OPC does, and
/// by what the parts hold, however it is stored. Content types and relationships are sets, and relationships
/// are compared by what they point at and not by their ids; other XML is compared as XML, and what is none,
/// or cannot be read as such, byte by byte. Items that are no part's do not count. At any time no more than
/// one part of each package is in memory.
///
/// COM must be initialised on the thread. Throws opc::PackageError for a part that cannot be decompressed.
void ComparePackages(const opc::Package& one,
                     const opc::Package& other,
                     const std::function<void(const PartDifference&)>& onPart);
} // namespace host::diff
