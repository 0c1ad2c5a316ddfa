#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace host::diff
{
/// What can differ: a start tag or text.
struct Item
{
    /// Of text, that of the tags beside it.
    int depth = 0;
    /// With the namespace; empty for text.
    std::string name;
    std::string text;
    std::map<std::string, std::string> attributes;
};

/// The items of a document one behind the other in little more room than the document itself takes. A list of
/// them would not do: every item has a map of its attributes, and a part may have as many short tags as 64 MB
/// hold.
class ItemRoll
{
public:
    void Append(const Item& item);

    /// Empty after the last one.
    std::optional<Item> Next();

private:
    void Put(std::string_view field);
    std::string Take();

    std::string m_bytes;
    std::size_t m_position = 0;
};
} // namespace host::diff
