#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::xml
{
/// Text as it stands in markup in UTF-8, between tags or in an attribute between double quotes. What a reader
/// would turn into a blank, or a line end into another one, is written as a reference.
std::string Escape(std::string_view text);

/// Writes a document in UTF-8 with an XML declaration. Names are written as they are given.
class Writer
{
public:
    Writer();

    void Start(std::string_view name);
    /// To be called before anything is put into the element.
    void Attribute(std::string_view name, std::string_view value);
    void Text(std::string_view text);
    /// An element that nothing was put into becomes an empty-element tag.
    void End();

    /// The document; all elements must have ended.
    std::string Take() { return std::move(m_markup); }

private:
    void CloseTag();

    std::string m_markup;
    std::vector<std::string> m_open;
    bool m_isInTag = false;
};
} // namespace host::xml
