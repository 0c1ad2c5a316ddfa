#include "host/xps/xpsdocument.h"

#include <algorithm>
#include <string>

#include "host/opc/files.h"
#include "host/xml/reader.h"
#include "host/xps/alternatecontent.h"
#include "host/xps/xpsvocabulary.h"

namespace host::xps
{
namespace
{
using opc::PackageError;
using opc::PartName;

std::optional<PartName> FindTarget(const opc::Package& package,
                                   const PartName& source,
                                   std::string_view Vocabulary::*type)
{
    const opc::Relationships relationships = package.RelationshipsOf(source);
    try
    {
        for (const Vocabulary& vocabulary : kVocabularies)
        {
            if (auto target = relationships.FindTarget(vocabulary.*type))
            {
                return target;
            }
        }
    }
    catch (const xml::MarkupError& fault)
    {
        throw PackageError(package.Path(), source.RelationshipsPart().Text(), fault.what());
    }
    return std::nullopt;
}

PartName FindSequence(const opc::Package& package)
{
    const PartName root = PartName::PackageRoot();
    auto sequence = FindTarget(package, root, &Vocabulary::fixedRepresentation);
    if (!sequence.has_value())
    {
        throw PackageError(
            package.Path(), root.RelationshipsPart().Text(), "names no fixed document sequence");
    }
    return std::move(*sequence);
}

/// The Source attributes of the elements `reference` of a structural part whose root is `root`.
std::vector<std::string> ReadSources(std::string_view markup,
                                     std::string_view root,
                                     std::string_view reference)
{
    const auto requireRoot = [&](bool isFound) {
        if (!isFound)
        {
            throw xml::MarkupError("is not a " + std::string(root));
        }
    };
    AlternateContent alternatives;
    bool rootSeen = false;
    std::vector<std::string> sources;
    xml::ReadElements(markup, [&](const xml::Element& element) {
        if (alternatives.Hides(element) || !IsXpsNamespace(element.namespaceUri))
        {
            return;
        }
        requireRoot(rootSeen || element.localName == root);
        rootSeen = true;
        if (element.localName == reference)
        {
            const std::string* const source = element.Find("Source");
            if (source == nullptr)
            {
                throw xml::MarkupError("has a " + std::string(reference) + " without Source");
            }
            sources.push_back(*source);
        }
    });
    requireRoot(rootSeen);
    return sources;
}
} // namespace

const Vocabulary& FindVocabulary(const opc::Package& package)
{
    const auto root = package.RelationshipsOf(PartName::PackageRoot());
    const auto found =
        std::find_if(std::begin(kVocabularies), std::end(kVocabularies), [&](const auto& each) {
            return root.FindTarget(each.fixedRepresentation).has_value();
        });
    return found == std::end(kVocabularies) ? kVocabularies[0] : *found;
}

std::optional<PartName> FindPrintTicket(const opc::Package& package, const PartName& part)
{
    return FindTarget(package, part, &Vocabulary::printTicket);
}

XpsDocument::XpsDocument(const opc::Package& package) : m_package(package), m_sequence(FindSequence(package))
{
    RequirePart(m_sequence, PartName::PackageRoot().RelationshipsPart());
}

std::optional<JobPart> XpsDocument::Next()
{
    if (!m_sequencePassed)
    {
        m_sequencePassed = true;
        JobPart sequence = Enter(JobPartKind::FixedDocumentSequence, m_sequence);
        ListReferences(m_sequence, "FixedDocumentSequence", "DocumentReference", m_documents);
        return sequence;
    }
    if (!m_pages.empty())
    {
        const PartName page = m_pages.back();
        m_pages.pop_back();
        return Enter(JobPartKind::FixedPage, page);
    }
    if (m_documents.empty())
    {
        return std::nullopt;
    }
    const PartName name = m_documents.back();
    m_documents.pop_back();
    JobPart document = Enter(JobPartKind::FixedDocument, name);
    ListReferences(name, "FixedDocument", "PageContent", m_pages);
    return document;
}

std::size_t XpsDocument::CountPages() const
{
    std::vector<PartName> documents;
    std::vector<PartName> pages;
    ListReferences(m_sequence, "FixedDocumentSequence", "DocumentReference", documents);
    for (const PartName& document : documents)
    {
        ListReferences(document, "FixedDocument", "PageContent", pages);
    }
    return pages.size();
}

JobPart XpsDocument::Enter(JobPartKind kind, const PartName& name)
{
    if (!m_passed.insert(name).second)
    {
        throw PackageError(m_package.Path(), name.Text(), "stands in the document twice");
    }
    JobPart part{kind, name, FindPrintTicket(m_package, name)};
    if (part.printTicket.has_value())
    {
        RequirePart(*part.printTicket, name);
    }
    return part;
}

void XpsDocument::ListReferences(const PartName& part,
                                 std::string_view root,
                                 std::string_view reference,
                                 std::vector<PartName>& references) const
{
    const std::string markup = m_package.Read(part);
    try
    {
        for (const std::string& source : ReadSources(markup, root, reference))
        {
            references.push_back(part.Resolve(source));
            RequirePart(references.back(), part);
        }
    }
    catch (const xml::MarkupError& fault)
    {
        throw PackageError(m_package.Path(), part.Text(), fault.what());
    }
    std::reverse(references.begin(), references.end());
}

void XpsDocument::RequirePart(const PartName& part, const PartName& referrer) const
{
    if (!m_package.Has(part))
    {
        throw PackageError(m_package.Path(),
                           part.Text(),
                           "is missing from the package, and " + referrer.Text() + " refers to it");
    }
}
} // namespace host::xps
