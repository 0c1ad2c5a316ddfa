#include "host/app/commands.h"

#include <optional>
#include <vector>

#include "base/logging/errors.h"
#include "base/utility/utf8.h"
#include "host/job/jobenvironment.h"
#include "host/opc/packageerror.h"
#include "host/pipeline/effectivetickets.h"
#include "host/pipeline/printer.h"
#include "host/pipeline/resulttext.h"
#include "host/tickets/ticketbytes.h"
#include "host/tickets/ticketdocument.h"
#include "host/tickets/ticketlisting.h"
#include "host/xps/xpsdocument.h"
#include "host/xps/xpsvocabulary.h"

namespace host::app
{
namespace
{
using tickets::TicketLayer;

const char* LevelOf(xps::JobPartKind kind)
{
    switch (kind)
    {
    case xps::JobPartKind::FixedDocumentSequence:
        return "job";
    case xps::JobPartKind::FixedDocument:
        return "document";
    case xps::JobPartKind::FixedPage:
        return "page";
    }
    return "";
}

/// The tickets that apply to a part, the most specific first.
class Layers
{
public:
    explicit Layers(const pipeline::TicketSetting& setting)
        : m_user{"user", setting.userTicket},
          m_default{"driver default", base::utility::ToUtf8(setting.defaultTicket)}
    {
    }

    void Enter(xps::JobPartKind kind, std::optional<tickets::TicketLayer> own)
    {
        // A level's ticket holds until the next part of that level.
        const auto level = static_cast<std::size_t>(kind);
        m_levels.resize(level);
        m_levels.push_back(std::move(own));
    }

    std::vector<tickets::TicketLayer> All() const
    {
        std::vector<tickets::TicketLayer> all;
        for (auto level = m_levels.rbegin(); level != m_levels.rend(); ++level)
        {
            if (*level)
            {
                all.push_back(**level);
            }
        }
        all.push_back(m_user);
        all.push_back(m_default);
        return all;
    }

private:
    tickets::TicketLayer m_user;
    tickets::TicketLayer m_default;
    std::vector<std::optional<tickets::TicketLayer>> m_levels;
};

/// The part to name in a message when a ticket cannot be shown.
const opc::PartName& PartAtFault(const xps::JobPart& part)
{
    return part.printTicket ? *part.printTicket : part.name;
}
/// Lists the tickets part by part in the order of the job: the part's own ticket and the effective one, each
/// value with the level that it comes from.
void ListTickets(const opc::Package& package,
                 const pipeline::TicketSetting& setting,
                 const std::function<void(const std::string&)>& print)
{
    pipeline::EffectiveTickets tickets(package, setting);
    xps::XpsDocument document(package);
    Layers layers(setting);
    while (const auto part = document.Next())
    {
        const std::string level = LevelOf(part->kind);
        std::optional<tickets::TicketLayer> own;
        if (part->printTicket)
        {
            own = tickets::TicketLayer{level, package.Read(*part->printTicket, xps::kPrintTicketLimit)};
        }
        print(level + " " + part->name.Text() + "\n");
        try
        {
            print(own ? "  own ticket " + part->printTicket->Text() + "\n" + tickets::ListTicket(own->bytes)
                      : "  no ticket of its own\n");
            tickets.Enter(*part);
            layers.Enter(part->kind, std::move(own));
            print("  effective ticket\n" +
                  tickets::ListTicketWithOrigins(tickets::SaveBytes(tickets.GetEffective().Get()),
                                                 layers.All()));
        }
        catch (const xml::MarkupError& fault)
        {
            throw opc::PackageError(package.Path(), PartAtFault(*part).Text(), fault.what());
        }
        catch (const base::exception::HresultError& failure)
        {
            const HRESULT result = failure.GetHresult();
            throw opc::PackageError(package.Path(),
                                    PartAtFault(*part).Text(),
                                    "there is no effective ticket: " + pipeline::FormatResult(result) + ": " +
                                        pipeline::DescribeResult(result));
        }
    }
}
} // namespace

ExitStatus Execute(const TicketsCommand& command, Console& console)
{
    const job::JobEnvironment environment(command.job);
    const opc::Package package(command.job.document);
    const pipeline::Printer printer(job::SpoolerPrinterOf(command.job));
    ListTickets(package,
                {environment.UserTicket(),
                 pipeline::DefaultTicketOf(command.job.tesselType),
                 printer.Name(),
                 printer.UserToken()},
                [&](const std::string& text) { console.PrintOut(text); });
    return ExitStatus::Done;
}
} // namespace host::app
