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
} // namespace host::pipeline
