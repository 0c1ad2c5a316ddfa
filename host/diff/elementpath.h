#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "host/diff/itemroll.h"

namespace host::diff
{
/// The name without its namespace.
std::string LocalName(const std::string& name);

/// Where the reading stands, as a path that XPath understands but for the namespaces.
class ElementPath
{
public:
    void Enter(const Item& item);

    /// The path of what holds the items of this depth.
    std::string HolderOf(int depth) const;

private:
    /// The elements of one depth that have the same holder.
    struct Level
    {
        std::map<std::string, std::size_t> children;
        std::string step;
    };

    std::vector<Level> m_levels;
};
} // namespace host::diff
