#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "host/opc/package.h"
#include "host/opc/partname.h"
#include "host/xps/xpsvocabulary.h"

namespace host::xps
{
enum class JobPartKind
{
    FixedDocumentSequence,
    FixedDocument,
    FixedPage
};

/// A part of the job's tree that may carry a print ticket.
struct JobPart
{
    JobPartKind kind;
    opc::PartName name;
    std::optional<opc::PartName> printTicket;
};

/// The vocabulary of a package, found by its root relationships; the original one if they do not show it.
/// Throws PackageError for relationships that cannot be read.
const Vocabulary& FindVocabulary(const opc::Package& package);

/// The print ticket of a part; empty without one. Throws PackageError for relationships that cannot be read.
std::optional<opc::PartName> FindPrintTicket(const opc::Package& package, const opc::PartName& part);

/// The tree of an XPS document in the order in which a print pipeline passes it on: the sequence, then each
/// document followed by its pages. Documents are read as the walk reaches them.
class XpsDocument
{
public:
    /// `package` must outlive this. Throws PackageError for a package without a fixed document sequence.
    explicit XpsDocument(const opc::Package& package);

    /// The next part; empty after the last. Throws PackageError for markup that cannot be read, for a part
    /// that is missing or of another kind, and for one that the tree holds twice, which XPS forbids.
    std::optional<JobPart> Next();

    /// How many pages the documents name. Throws as Next does.
    std::size_t CountPages() const;

private:
    JobPart Enter(JobPartKind kind, const opc::PartName& name);
    void ListReferences(const opc::PartName& part,
                        std::string_view root,
                        std::string_view reference,
                        std::vector<opc::PartName>& references) const;
    void RequirePart(const opc::PartName& part, const opc::PartName& referrer) const;

    const opc::Package& m_package;
    opc::PartName m_sequence;
    bool m_sequencePassed = false;
    // Those that are still to come, in reverse order.
    std::vector<opc::PartName> m_documents;
    std::vector<opc::PartName> m_pages;
    std::set<opc::PartName> m_passed;
};
} // namespace host::xps
