#include "host/app/commandline.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/logging/errors.h"
#include "base/utility/utf8.h"
#include "host/app/console.h"
#include "host/job/jobenvironment.h"
#include "host/opc/files.h"
#include "host/pipeline/effectivetickets.h"
#include "host/pipeline/printer.h"
#include "host/pipeline/resulttext.h"
#include "host/report/pagejson.h"
#include "host/tickets/ticketdocument.h"
#include "host/tickets/ticketfacts.h"
#include "host/tickets/ticketlisting.h"
#include "host/xps/xpsdocument.h"
#include "host/xps/xpsvocabulary.h"

namespace host::app
{
namespace
{
using report::Json;

// By the kind of the level's part.
constexpr std::array kLevels = {"job", "document", "page"};

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
    return report::ToJsonLine({{"level", listing.level},
                               {"part", listing.part},
                               {"own", own},
                               {"effective", ToJson(listing.effective)}});
}

/// Lists the tickets part by part in the order of the job: the part's own ticket and the effective one, each
/// value with the level that it comes from.
void ListTickets(const opc::Package& package,
                 const pipeline::TicketSetting& setting,
                 const std::function<void(const LevelListing&)>& show)
{
    pipeline::EffectiveTickets tickets(package, setting);
    xps::XpsDocument document(package);
    // A level's own ticket holds until the next part of that level.
    std::array<std::optional<std::string>, kLevels.size()> own;
    while (const auto part = document.Next())
    {
        const auto level = static_cast<std::size_t>(part->kind);
        std::fill(own.begin() + static_cast<std::ptrdiff_t>(level), own.end(), std::nullopt);
        if (part->printTicket)
        {
            own[level] = package.Read(*part->printTicket, xps::kPrintTicketLimit);
            own[level] = setting.editTicket ? setting.editTicket(*own[level]) : own[level];
        }
        // The most specific first.
        std::vector<tickets::TicketLayer> layers;
        for (std::size_t index = own.size(); index-- > 0;)
        {
            if (own[index])
            {
                layers.push_back({kLevels[index], *own[index]});
            }
        }
        layers.push_back({"user", setting.userTicket});
        layers.push_back({"driver default", base::utility::ToUtf8(setting.defaultTicket)});
        LevelListing listing{kLevels.at(level), part->name.Text(), {}, {}, {}};
        try
        {
            if (own[level])
            {
                listing.ownTicket = part->printTicket->Text();
                listing.own = tickets::ListTicket(*own[level]);
            }
            tickets.Enter(*part);
            listing.effective = tickets::ListTicket(tickets::SaveBytes(tickets.GetEffective().Get()), layers);
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
