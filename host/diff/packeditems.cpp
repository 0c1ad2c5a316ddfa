#include "host/diff/packeditems.h"

#include <utility>

namespace host::diff
{
namespace
{
// XML cannot contain either.
constexpr char kFieldEnd = '\0';
constexpr char kItemEnd = '\1';
} // namespace

void PackedItems::Append(const Item& item)
{
    Put(std::to_string(item.depth));
    Put(item.name);
    Put(item.text);
    for (const auto& [name, value] : item.attributes)
    {
        Put(name);
        Put(value);
    }
    m_bytes += kItemEnd;
}

std::optional<Item> PackedItems::Next()
{
    if (m_position == m_bytes.size())
    {
        return std::nullopt;
    }
    Item item;
    item.depth = std::stoi(Take());
    item.name = Take();
    item.text = Take();
    while (m_bytes[m_position] != kItemEnd)
    {
        std::string name = Take();
        item.attributes.emplace(std::move(name), Take());
    }
    ++m_position;
    return item;
}

void PackedItems::Put(std::string_view field)
{
    m_bytes.append(field) += kFieldEnd;
}

std::string PackedItems::Take()
{
    const std::size_t end = m_bytes.find(kFieldEnd, m_position);
    std::string field = m_bytes.substr(m_position, end - m_position);
    m_position = end + 1;
    return field;
}
} // namespace host::diff
