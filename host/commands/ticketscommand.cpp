#include "host/commands/ticketscommand.h"

#include <string>

#include "host/commands/jobground.h"
#include "host/opc/package.h"
#include "host/tickets/jobtickets.h"
#include "host/tickets/printer.h"
#include "host/ticketsjob.h"

namespace host
{
ExitStatus Carry(const TicketsCommand& command, Console& console)
{
    const JobGround ground(command.setting);
    const opc::Package package(command.input);
    const tickets::Printer printer(PrinterOf(command.setting));
    ListTickets(package,
                {ground.UserTicket(),
                 tickets::DefaultTicketOf(command.setting.tesselType),
                 printer.Name(),
                 printer.UserToken()},
                [&](const std::string& text) { console.PrintOut(text); });
    return ExitStatus::Done;
}
} // namespace host
