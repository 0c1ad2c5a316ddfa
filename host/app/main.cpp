#include <exception>
#include <string>
#include <variant>
#include <vector>

#include "base/utility/utf8.h"
#include "host/app/commandline.h"
#include "host/app/console.h"
#include "host/app/interrupt.h"
#include "host/xml/text.h"

namespace host::app
{
namespace
{
ExitStatus Execute(const Notice& notice, Console& console)
{
    notice.status == ExitStatus::Done ? console.PrintOut(notice.text) : console.PrintError(notice.text);
    return notice.status;
}

/// Prints a failure as one line.
template <typename AnyCommand>
ExitStatus ExecuteOrReport(const AnyCommand& command, Console& console)
{
    try
    {
        return Execute(command, console);
    }
    catch (const InterruptedError& stop)
    {
        console.PrintError(std::string("xpsfilterhost: ") + stop.what() + "\n");
        return ExitStatus::Interrupted;
    }
    catch (const std::exception& failure)
    {
        console.PrintError(xml::ToOneLine(std::string("xpsfilterhost: ") + failure.what()) + "\n");
    }
    return ExitStatus::Unusable;
}
} // namespace
} // namespace host::app

// NOLINTNEXTLINE(readability-identifier-naming): the runtime library gives the name.
int wmain(int count, wchar_t** arguments)
{
    std::vector<std::string> texts;
    for (int index = 1; index < count; ++index)
    {
        texts.push_back(base::utility::ToUtf8(arguments[index]));
    }
    host::app::Console console;
    const auto command = host::app::ParseCommandLine(texts);
    host::app::ExitStatus status =
        std::visit([&](const auto& what) { return host::app::ExecuteOrReport(what, console); }, command);
    if (console.HasLostText() && status == host::app::ExitStatus::Done)
    {
        console.PrintError("xpsfilterhost: the standard output cannot be written\n");
        status = host::app::ExitStatus::Unusable;
    }
    return static_cast<int>(status);
}
