#include "host/pipeline/pipelinejob.h"

namespace host::pipeline
{
void PipelineJob::RemoveOrphanedTickets()
{
    for (const auto& [ticket, use] : ticketUses)
    {
        if (use.detached == use.named)
        {
            writer->RemovePart(ticket);
        }
    }
}

std::string_view PipelineJob::FindUnfinishedWork() const
{
    if (!isReadToEnd || sent != handedOut)
    {
        return "did not send every part on";
    }
    return isSenderClosed ? std::string_view() : "did not close its sender";
}
} // namespace host::pipeline
