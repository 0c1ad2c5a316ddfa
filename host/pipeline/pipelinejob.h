#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "host/opc/package.h"
#include "host/opc/packagewriter.h"
#include "host/pipeline/calltrace.h"

namespace host::pipeline
{
/// What the endpoints of one job share. They hold it together, so that a filter which keeps one of them does
/// not pull it from under the others; whoever runs the job sees by their number what the filter kept.
///
/// The job's thread alone changes it, but for the two flags.
struct PipelineJob
{
    PipelineJob(const opc::Package& source, opc::PackageWriter* target, CallTrace& calls)
        : package(source), writer(target), trace(calls)
    {
    }

    const opc::Package& package;
    /// Null for a job that is only read.
    opc::PackageWriter* writer;
    CallTrace& trace;

    /// The part that was handed out last, for messages.
    std::string currentPart;

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

    /// Removes the tickets that no part of the job names any more. To be called once all parts have passed.
    void RemoveOrphanedTickets();
};

using PipelineJobPtr = std::shared_ptr<PipelineJob>;
} // namespace host::pipeline
