#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "base/xps/printschema/vocabulary/qname.h"

namespace base::xps::printschema
{
/// An ordered list of names. A name's position is the number by which the feature accessors refer to it:
/// their feature and option ids are indexes into such lists. A list registers its names in its constructor
/// and never changes afterwards, so that all threads may share it.
class SchemaBase
{
public:
    virtual const std::vector<Qname>& GetQnames() const;

    /// Every namespace that occurs in the list. Throws std::logic_error when there is none.
    virtual const std::set<NamespaceId>& GetNamespaces() const;

    /// Throws std::invalid_argument beyond the list's end.
    virtual const Qname& GetQname(std::uint32_t index) const;

    /// The index of a name, compared exactly, or -1. Throws std::invalid_argument for a null name.
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
