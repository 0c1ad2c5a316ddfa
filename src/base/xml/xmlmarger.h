#pragma once

#include <vector>

#include "base/utility/comptr.h"
#include "base/xml/namespaces.h"
#include "platform/msxml6.h"

namespace base::xml
{
/// Decides which nodes of two trees are the same item.
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

/// Completes one XML tree from another: clones into the base what only the target has. What the base has
/// stays as it is; the target is never changed.
///
/// The two root elements match. A child element of the target matches the first base child that the
/// comparator calls the same and that has no match yet. Matching pairs are completed recursively. A child
/// without a match is appended as a deep clone, in which the prefixes of the target's root keep their
/// meaning.
///
/// It follows the rules of print tickets:
/// - a Feature that has an Option gets no second one, as a Feature selects one Option;
/// - a Feature whose Option has content is complete, as the numbers in it belong together;
/// - nothing is added below a node that has a Value;
/// - a child of the root counts as present under another prefix too, as the print ticket provider chooses its
///   own prefixes. If the base's root binds the target's prefix to another namespace, that child is changed
///   to use the target's prefix.
class XmlMarger
{
public:
    /// The comparator must outlive this object.
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
