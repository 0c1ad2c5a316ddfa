#include "host/ticketsjob.h"

#include <optional>
#include <vector>

#include "base/logging/errors.h"
#include "base/utility/utf8.h"
#include "host/opc/packageerror.h"
#include "host/report/calllist.h"
#include "host/report/ticketlisting.h"
#include "host/resulttext.h"
#include "host/tickets/ticketbytes.h"
#include "host/ticketservice/printschema.h"
#include "host/xps/xpsdocument.h"
#include "host/xps/xpsvocabulary.h"

namespace host
{
namespace
{
using report::TicketLayer;

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

/// The tickets that hold for a part, the most specific first.
class Layers
{
public:
    explicit Layers(const tickets::TicketSetting& setting)
        : m_user{"user", setting.userTicket},
          m_default{"driver default", base::utility::ToUtf8(setting.defaultTicket)}
    {
    }

    void Enter(xps::JobPartKind kind, std::optional<TicketLayer> own)
    {
        // A level's ticket ends with the part that brought it.
        const auto level = static_cast<std::size_t>(kind);
        m_levels.resize(level);
        m_levels.push_back(std::move(own));
    }

    std::vector<TicketLayer> All() const
    {
        std::vector<TicketLayer> all;
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
    TicketLayer m_user;
    TicketLayer m_default;
    std::vector<std::optional<TicketLayer>> m_levels;
};

/// The part to look at where a ticket cannot be told.
const opc::PartName& CulpritOf(const xps::JobPart& part)
{
    return part.printTicket ? *part.printTicket : part.name;
}
} // namespace

void ListTickets(const opc::Package& package,
                 const tickets::TicketSetting& setting,
                 const std::function<void(const std::string&)>& print)
{
    tickets::JobTickets tickets(package, setting);
    xps::XpsDocument document(package);
    Layers layers(setting);
    while (const auto part = document.Next())
    {
        const std::string level = LevelOf(part->kind);
        std::optional<TicketLayer> own;
        if (part->printTicket)
        {
            own = TicketLayer{level, package.Read(*part->printTicket, xps::kPrintTicketLimit)};
        }
        print(level + " " + part->name.Text() + "\n");
        try
        {
            print(own ? "  own ticket " + part->printTicket->Text() + "\n" + report::ListTicket(own->bytes)
                      : "  no ticket of its own\n");
            tickets.Enter(*part);
            layers.Enter(part->kind, std::move(own));
            print("  effective ticket\n" +
                  report::ListTicketWithOrigins(tickets::SaveBytes(tickets.GetEffective().Get()),
                                                layers.All()));
        }
        catch (const ticketservice::FormatError& fault)
        {
            throw opc::PackageError(package.Path(), CulpritOf(*part).Text(), fault.what());
        }
        catch (const base::exception::HresultError& failure)
        {
            const HRESULT result = failure.GetHresult();
            throw opc::PackageError(package.Path(),
                                    CulpritOf(*part).Text(),
                                    "there is no effective ticket: " + FormatResult(result) + ": " +
                                        DescribeResult(result));
        }
    }
}
} // namespace host
