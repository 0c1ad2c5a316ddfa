#include "base/xps/printschema/schemabase.h"

#include <algorithm>
#include <stdexcept>

#include "base/logging/failure.h"

namespace base::xps::printschema
{
using exception::Throw;

const std::vector<Qname>& SchemaBase::GetQnames() const
{
    return m_qnames;
}

const std::set<NamespaceId>& SchemaBase::GetNamespaces() const
{
    if (m_namespaces.empty())
    {
        Throw<std::logic_error>("namespaces should be initialized in constructor through AddQname().");
    }
    return m_namespaces;
}

const Qname& SchemaBase::GetQname(std::uint32_t index) const
{
    const std::vector<Qname>& qnames = GetQnames();
    if (index >= qnames.size())
    {
        Throw<std::invalid_argument>("The index you specified is out of range.");
    }
    return qnames[index];
}

std::int32_t SchemaBase::IndexOf(const Qname& name) const
{
    return IndexOf(name.namespaceId, name.localName.c_str());
}

std::int32_t SchemaBase::IndexOf(NamespaceId namespaceId, const std::wstring& localName) const
{
    return FindQname(GetQnames(), namespaceId, localName.c_str());
}

std::int32_t SchemaBase::IndexOf(NamespaceId namespaceId, const wchar_t* localName) const
{
    if (localName == nullptr)
    {
        Throw<std::invalid_argument>("pName is null.");
    }
    return FindQname(GetQnames(), namespaceId, localName);
}

void SchemaBase::AddQname(NamespaceId namespaceId, const wchar_t* localName)
{
    AddQname(Qname{namespaceId, localName});
}

void SchemaBase::AddQname(const Qname& name)
{
    m_qnames.push_back(name);
    m_namespaces.insert(name.namespaceId);
}

std::int32_t SchemaBase::FindQname(const std::vector<Qname>& qnames,
                                   NamespaceId namespaceId,
                                   const wchar_t* target)
{
    if (target == nullptr)
    {
        Throw<std::invalid_argument>("pTarget is null.");
    }
    const auto found = std::ranges::find_if(qnames, [&](const Qname& name) {
        return name.localName == target && name.namespaceId == namespaceId;
    });
    return found == qnames.end() ? -1 : static_cast<std::int32_t>(found - qnames.begin());
}
} // namespace base::xps::printschema
