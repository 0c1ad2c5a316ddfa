#pragma once

#include <vector>

#include "base/utility/comptr.h"
#include "base/xml/namespaces.h"
#include "platform/msxml6.h"

namespace base::xml
{
/// Tells which nodes of two trees stand for the same item.
class XmlNodeComparator
{
public:
    virtual ~XmlNodeComparator() = default;

    /// Throws HresultError where the DOM fails.
    virtual bool IsSameNode(IXMLDOMNode* first, IXMLDOMNode* second) const = 0;

protected:
    XmlNodeComparator() = default;
    XmlNodeComparator(const XmlNodeComparator&) = default;
    XmlNodeComparator& operator=(const XmlNodeComparator&) = default;
};

/// Completes one XML tree by another: what the target has and the base lacks is cloned into the base; what
/// the base has stays as it is, and the target is never changed.
///
/// The root elements correspond to each other. A child element of the target is matched by the first base
/// child, not matched yet, that the comparator calls the same; matched pairs are completed in turn, and a
/// child without a match is appended whole, and the prefixes that the target's root declares keep their
/// meaning in it.
///
/// Made for print tickets: a Feature selects one Option, so that one that has an Option gains no second; a
/// Feature whose Option has content of its own is complete, as its numbers belong together; and nothing is
/// added below a node that carries a Value. A child of the root that bears the same name under another
/// prefix, as the print ticket provider chooses prefixes anew, counts as present. It is given the target's
/// prefix where the base's root uses that for something else.
class XmlMarger
{
public:
    /// The comparator is borrowed.
    explicit XmlMarger(const XmlNodeComparator& comparator) noexcept : m_comparator(comparator) {}

    /// Throws std::invalid_argument for a null document, HresultError where the DOM fails.
    void Merge(IXMLDOMDocument2* base, IXMLDOMDocument2* target) const;

private:
    using Nodes = std::vector<utility::ComPtr<IXMLDOMNode>>;

    /// `wanted` are children of the target.
    void Complete(IXMLDOMNode* base, const Nodes& wanted, const NamespaceDeclarations& conflicting) const;

    const XmlNodeComparator& m_comparator;
};
} // namespace base::xml
