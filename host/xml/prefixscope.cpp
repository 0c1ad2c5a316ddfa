#include "host/xml/prefixscope.h"

namespace host::xml
{
void PrefixScope::Enter(const Element& element)
{
    std::vector<std::string>& declared = m_declared.emplace_back();
    for (const PrefixBinding& binding : element.prefixes)
    {
        m_namespaces[binding.prefix].push_back(binding.namespaceUri);
        declared.push_back(binding.prefix);
    }
}

void PrefixScope::Leave()
{
    for (const std::string& prefix : m_declared.back())
    {
        m_namespaces[prefix].pop_back();
    }
    m_declared.pop_back();
}

const std::string* PrefixScope::Find(std::string_view prefix) const
{
    const auto found = m_namespaces.find(prefix);
    return found == m_namespaces.end() || found->second.empty() ? nullptr : &found->second.back();
}
} // namespace host::xml
