#include "host/app/commands.h"

#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

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
using Json = nlohmann::ordered_json;

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

/// The tickets of the job, of a document or of a page.
struct LevelListing
{
    std::string level;
    std::string part;
    /// Empty for none.
    std::string ownTicket;
    tickets::TicketListing own;
    tickets::TicketListing effective;
};

std::string FormatText(const LevelListing& listing)
{
    return listing.level + " " + listing.part + "\n" +
           (listing.ownTicket.empty()
                ? "  no ticket of its own\n"
                : "  own ticket " + listing.ownTicket + "\n" + tickets::FormatListing(listing.own)) +
           "  effective ticket\n" + tickets::FormatListing(listing.effective);
}

Json ToJson(const tickets::TicketListing& listing)
{
    Json settings = Json::array();
    for (const tickets::ListedSetting& setting : listing.settings)
    {
        Json object = {{"name", setting.name}, {"value", setting.value}, {"properties", Json::object()}};
        for (const auto& [name, value] : setting.properties)
        {
            object["properties"][name] = value;
        }
        if (!setting.origin.empty())
        {
            object["origin"] = setting.origin;
        }
        settings.push_back(std::move(object));
    }
    Json prefixes = Json::object();
    for (const xml::PrefixBinding& binding : listing.prefixes)
    {
        prefixes[binding.prefix] = binding.namespaceUri;
    }
    return {{"settings", settings}, {"prefixes", prefixes}};
}

std::string FormatJson(const LevelListing& listing)
{
    Json own = nullptr;
    if (!listing.ownTicket.empty())
    {
        own = {{"ticket", listing.ownTicket}};
        own.update(ToJson(listing.own));
    }
    const Json object = {{"level", listing.level},
                         {"part", listing.part},
                         {"own", own},
                         {"effective", ToJson(listing.effective)}};
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

/// Lists the tickets part by part in the order of the job: the part's own ticket and the effective one, each
/// value with the level that it comes from.
void ListTickets(const opc::Package& package,
                 const pipeline::TicketSetting& setting,
                 const std::function<void(const LevelListing&)>& show)
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
            const std::string bytes = package.Read(*part->printTicket, xps::kPrintTicketLimit);
            own = tickets::TicketLayer{level, setting.editTicket ? setting.editTicket(bytes) : bytes};
        }
        LevelListing listing{level, part->name.Text(), {}, {}, {}};
        try
        {
            if (own)
            {
                listing.ownTicket = part->printTicket->Text();
                listing.own = tickets::ListTicket(own->bytes);
            }
            tickets.Enter(*part);
            layers.Enter(part->kind, std::move(own));
            listing.effective =
                tickets::ListTicket(tickets::SaveBytes(tickets.GetEffective().Get()), layers.All());
            show(listing);
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
                 printer.UserToken(),
                 job::TicketEditOf(command.job)},
                [&](const LevelListing& listing) {
                    console.PrintOut(command.asJson ? FormatJson(listing) : FormatText(listing));
                });
    return ExitStatus::Done;
}
} // namespace host::app
