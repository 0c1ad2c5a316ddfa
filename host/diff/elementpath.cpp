#include "host/diff/elementpath.h"

#include <algorithm>

namespace host::diff
{
std::string LocalName(const std::string& name)
{
    return name.substr(name.find('}') + 1);
}

void ElementPath::Enter(const Item& item)
{
    const std::string name = LocalName(item.name);
    // Deeper levels have ended.
    m_levels.resize(static_cast<std::size_t>(item.depth) + 1);
    const std::size_t number = ++m_levels.back().children[name];
    m_levels.back().step = item.depth == 0 ? name : name + "[" + std::to_string(number) + "]";
}

std::string ElementPath::ParentOf(int depth) const
{
    std::string path;
    for (std::size_t level = 0; level < std::min(m_levels.size(), static_cast<std::size_t>(depth)); ++level)
    {
        path += "/" + m_levels[level].step;
    }
    return path.empty() ? "/" : path;
}
} // namespace host::diff
