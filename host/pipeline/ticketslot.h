#pragma once

#include "base/utility/comptr.h"
#include "host/opc/partname.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/ticketpart.h"
#include "host/xps/xpsdocument.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// The print ticket of one part of the tree: its own, none, or a new one.
class TicketSlot
{
public:
    /// `owner` is the part as the document has it.
    TicketSlot(const PipelineJobPtr& job, const xps::JobPart& owner);

    /// Answers IXxx::GetPrintTicket.
    [[nodiscard]] HRESULT Get(IPartPrintTicket** ticket) const;

    /// Takes a ticket of this pipeline; E_INVALIDARG for any other, and what was there stays.
    [[nodiscard]] HRESULT Set(IPartPrintTicket* ticket);

    /// Drops the part's own ticket; false when it does not have this name.
    bool Detach(const opc::PartName& name);

    /// The part as the document has it.
    const xps::JobPart& Owner() const noexcept { return m_owner; }
    /// Null when the part keeps what it has.
    TicketPart* New() const noexcept { return m_pNew.Get(); }
    bool IsComplete() const noexcept { return !m_pNew || m_pNew->IsComplete(); }

    /// Writes the change of the ticket into the package.
    void Store();

private:
    PipelineJobPtr m_pJob;
    xps::JobPart m_owner;
    bool m_isDetached = false;
    base::utility::ComPtr<TicketPart> m_pNew;
};
} // namespace host::pipeline
