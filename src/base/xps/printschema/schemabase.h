#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "base/xps/printschema/vocabulary/qname.h"

namespace base::xps::printschema
{
/// An ordered list of names. The feature and option ids of the accessors are indexes into such lists. A list
/// adds its names in its constructor and does not change afterwards, so all threads can share it. The order
/// of its virtual functions is fixed: docs/surface.md.
class SchemaBase
{
public:
    virtual const std::vector<Qname>& GetQnames() const;

    /// The namespaces of all names. Throws std::logic_error for an empty list.
    virtual const std::set<NamespaceId>& GetNamespaces() const;

    /// Throws std::invalid_argument for an index out of range.
    virtual const Qname& GetQname(std::uint32_t index) const;

    /// The index of a name, compared exactly; -1 if it is not in the list. Throws std::invalid_argument for
    /// null.
    virtual std::int32_t IndexOf(const Qname& name) const;
    virtual std::int32_t IndexOf(NamespaceId namespaceId, const std::wstring& localName) const;
    virtual std::int32_t IndexOf(NamespaceId namespaceId, const wchar_t* localName) const;

    void AddQname(NamespaceId namespaceId, const wchar_t* localName);
    void AddQname(const Qname& name);

    /// The search behind IndexOf.
    static std::int32_t FindQname(const std::vector<Qname>& qnames,
                                  NamespaceId namespaceId,
                                  const wchar_t* target);

protected:
    SchemaBase() = default;
    SchemaBase(const SchemaBase&) = default;
    SchemaBase& operator=(const SchemaBase&) = default;
    ~SchemaBase() = default;

private:
    std::set<NamespaceId> m_namespaces;
    std::vector<Qname> m_qnames;
};
} // namespace base::xps::printschema
