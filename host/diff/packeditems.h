#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace host::diff
{
/// A start tag or a text: what is compared.
struct Item
{
    /// A text has the depth of the tags beside it.
    int depth = 0;
    /// With the namespace; empty for a text.
    std::string name;
    std::string text;
    std::map<std::string, std::string> attributes;
};

/// The items of a document in one block of bytes, which takes little more memory than the document. A list of
/// items would take too much: each has a map of its attributes, and a part of 64 MB may consist of short
/// tags.
class PackedItems
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
