#pragma once

#include <atomic>
#include <cstddef>
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
/// What the endpoints of one job share. They hold it together, so that a filter which keeps one of them does
/// not pull it from under the others; whoever runs the job sees by their number what the filter kept.
///
/// The job's thread alone changes it, but for what is atomic.
struct PipelineJob
{
    /// Throws PackageError for relationships of the package that cannot be read.
    PipelineJob(const opc::Package& source, opc::PackageWriter* target, CallTrace& calls)
        : package(source), vocabulary(xps::FindVocabulary(source)), writer(target), trace(calls)
    {
    }

    const opc::Package& package;
    /// That new relationships are written in.
    const xps::Vocabulary& vocabulary;
    /// Null for a job that is only read.
    opc::PackageWriter* writer;
    CallTrace& trace;

    /// The part that was handed out last, for messages.
    std::string currentPart;

    /// The parts of the tree that were handed out and those that came back, which they must in the same
    /// order: it is the source's own tree that is written.
    std::size_t handedOut = 0;
    std::size_t sent = 0;
    bool isReadToEnd = false;

    /// Whether new markup is taken that is not well-formed or lies in no namespace of XPS.
    bool acceptsMalformed = false;
    /// The page that was not taken for its new markup, and what is wrong with that.
    struct Refusal
    {
        std::string page;
        std::string fault;
    };
    std::optional<Refusal> refusal;

    /// How many parts of the job name a ticket, and how many of them let go of it.
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

    /// Removes the tickets that no part of the job names any more. To be called once all parts have passed.
    void RemoveOrphanedTickets();

    /// What a filter that claims success still owes the pipeline; empty for nothing.
    std::string_view FindDebt() const;
};

using PipelineJobPtr = std::shared_ptr<PipelineJob>;
} // namespace host::pipeline
