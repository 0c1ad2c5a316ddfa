#include <exception>
#include <string>
#include <variant>
#include <vector>

#include "base/utility/utf8.h"
#include "host/commandline.h"
#include "host/commands/batchcommand.h"
#include "host/commands/diffcommand.h"
#include "host/commands/runcommand.h"
#include "host/commands/ticketscommand.h"
#include "host/console.h"
#include "host/interrupt.h"
#include "host/text.h"

namespace host
{
namespace
{
template <typename JobCommand>
ExitStatus Perform(const JobCommand& command, Console& console)
{
    try
    {
        return Carry(command, console);
    }
    catch (const InterruptedError& stop)
    {
        console.PrintError(std::string("xpsfilterhost: ") + stop.what() + "\n");
        return ExitStatus::FilterFailed;
    }
    catch (const std::exception& failure)
    {
        console.PrintError(ToOneLine(std::string("xpsfilterhost: ") + failure.what()) + "\n");
    }
    return ExitStatus::Unusable;
}

ExitStatus Perform(const Notice& notice, Console& console)
{
    notice.status == ExitStatus::Done ? console.PrintOut(notice.text) : console.PrintError(notice.text);
    return notice.status;
}
} // namespace
} // namespace host

// NOLINTNEXTLINE(readability-identifier-naming): the runtime library gives the name.
int wmain(int count, wchar_t** arguments)
{
    std::vector<std::string> texts;
    for (int index = 1; index < count; ++index)
    {
        texts.push_back(base::utility::ToUtf8(arguments[index]));
    }
    host::Console console;
    const auto command = host::ParseCommandLine(texts);
    host::ExitStatus status =
        std::visit([&](const auto& what) { return host::Perform(what, console); }, command);
    if (console.HasLostText() && status == host::ExitStatus::Done)
    {
        console.PrintError("xpsfilterhost: the standard output cannot be written\n");
        status = host::ExitStatus::Unusable;
    }
    return static_cast<int>(status);
}
