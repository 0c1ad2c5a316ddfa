#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/opc/package.h"
#include "host/opc/packagewriter.h"
#include "host/pipeline/calltrace.h"
#include "host/xps/xpsdocument.h"
#include "host/xps/xpsvocabulary.h"
#include "platform/win32.h"

namespace host::pipeline
{
/// Makes another ticket of a ticket's bytes.
using TicketEdit = std::function<std::string(const std::string&)>;

/// The state that the endpoints of one job share. Each holds a reference, so that it lives as long as any
/// endpoint that a filter keeps; the reference count shows what the filter did not release.
///
/// Only the job's thread changes it, except for the atomic members.
struct PipelineJob
{
    /// Throws PackageError for relationships of the package that cannot be read.
    PipelineJob(const opc::Package& source, opc::PackageWriter* target, CallTrace& calls)
        : package(source), vocabulary(xps::FindVocabulary(source)), writer(target), trace(calls)
    {
    }

    const opc::Package& package;
    /// The vocabulary of new relationships.
    const xps::Vocabulary& vocabulary;
    /// Null for a job that is only read.
    opc::PackageWriter* writer;
    CallTrace& trace;

    /// The part that the filter got last, for messages.
    std::string currentPart;

    /// The parts of the tree that the filter got, and those that it sent. It must send them in the same
    /// order: it is the source's own tree that is written.
    std::size_t handedOut = 0;
    std::size_t sent = 0;
    bool isReadToEnd = false;

    /// Changes the document's tickets for the filter; empty for tickets as they stand.
    TicketEdit editTicket;

    /// Whether new markup is taken that is not well-formed or lies in no namespace of XPS.
    bool acceptsMalformed = false;
    /// The page that was refused because of its new markup, and the fault in it.
    struct Refusal
    {
        std::string page;
        std::string fault;
    };
    std::optional<Refusal> refusal;

    /// How many parts of the job name a ticket, and how many of them dropped it.
    struct TicketUse
    {
        std::size_t named = 0;
        std::size_t detached = 0;
    };
    std::map<opc::PartName, TicketUse> ticketUses;

    /// The names that new parts have taken.
    std::set<opc::PartName> newParts;

    std::atomic<bool> isCancelled{false};
    std::atomic<bool> isSenderClosed{false};
    /// The first failure that a filter gave as a reason to shut the pipeline down.
    std::atomic<HRESULT> shutdownReason{S_OK};

    /// Removes the tickets that no part of the job names any more. To be called after the last part.
    void RemoveOrphanedTickets();

    /// The work that a filter left unfinished although it reported success; empty for none.
    std::string_view FindUnfinishedWork() const;
};

using PipelineJobPtr = std::shared_ptr<PipelineJob>;
} // namespace host::pipeline
