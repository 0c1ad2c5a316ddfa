#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/xml/reader.h"

namespace host::xml
{
inline constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";

/// The namespaces that prefixes stand for where a reading is, for names in attributes and in text, which the
/// reader does not resolve.
class PrefixScope
{
public:
    /// To be called at each start tag.
    void Enter(const Element& element);
    /// To be called at each end tag.
    void Leave();

    /// Null for a prefix that is not declared. The empty prefix always is.
    const std::string* Find(std::string_view prefix) const;

private:
    // For each prefix the namespaces of the open elements that declare it; the last one counts.
    std::map<std::string, std::vector<std::string>, std::less<>> m_namespaces = {
        {"", {""}}, {"xml", {std::string(kXmlNamespace)}}};
    // The prefixes that each open element declares.
    std::vector<std::vector<std::string>> m_declared;
};
} // namespace host::xml
