#pragma once

#include "base/utility/comptr.h"
#include "host/opc/partname.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/ticketpart.h"
#include "host/xps/xpsdocument.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// The print ticket of one part of the tree: the one that it came with, none, or a new one.
class TicketSlot
{
public:
    /// `owner` is the part as the document has it.
    TicketSlot(const PipelineJobPtr& job, const xps::JobPart& owner);

    /// Answers IXxx::GetPrintTicket.
    [[nodiscard]] HRESULT Get(IPartPrintTicket** ticket) const;

    /// Takes a ticket of this pipeline; E_INVALIDARG for any other, and what was there stays.
    [[nodiscard]] HRESULT Set(IPartPrintTicket* ticket);

    /// Lets go of the ticket of this name; false when it is not the one that the part came with.
    bool Detach(const opc::PartName& name);

    /// The part as it came.
    const xps::JobPart& Owner() const noexcept { return m_owner; }
    /// Null when the part keeps what it has.
    TicketPart* New() const noexcept { return m_pNew.Get(); }
    bool IsComplete() const noexcept { return !m_pNew || m_pNew->IsComplete(); }

    /// Writes what has become of the ticket into the package.
    void Store();

private:
    PipelineJobPtr m_pJob;
    xps::JobPart m_owner;
    bool m_isDetached = false;
    base::utility::ComPtr<TicketPart> m_pNew;
};
} // namespace host::pipeline
