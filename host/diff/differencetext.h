#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/diff/packeditems.h"

namespace host::diff
{
/// The name without its namespace.
std::string LocalName(const std::string& name);

/// The position in a document as an XPath without namespaces.
class ElementPath
{
public:
    void Enter(const Item& item);

    /// The path of the parent of items at this depth.
    std::string ParentOf(int depth) const;

private:
    /// The elements at one depth that have the same parent.
    struct Level
    {
        std::map<std::string, std::size_t> children;
        std::string step;
    };

    std::vector<Level> m_levels;
};

/// Two values side by side, long ones cut to where they differ: "816 -> 1056.00".
std::string FormatChange(std::string_view one, std::string_view other);
} // namespace host::diff
