#include <exception>
#include <string>
#include <variant>
#include <vector>

#include "base/logging/errors.h"
#include "base/utility/utf8.h"
#include "host/commandline.h"
#include "host/console.h"
#include "host/interrupt.h"
#include "host/opc/ziparchive.h"
#include "host/pagerewriter.h"
#include "host/rewritejob.h"

namespace host
{
namespace
{
/// The main thread's apartment, which the XML reader needs.
class ComApartment
{
public:
    ComApartment() { base::exception::ThrowIfFailed(CoInitializeEx(nullptr, COINIT_MULTITHREADED)); }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() { CoUninitialize(); }
};

std::string CountOf(std::size_t count, const char* what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string Describe(const JobProgress& progress)
{
    if (progress.stage == JobStage::Writing)
    {
        return "writing, " + std::to_string(static_cast<int>(progress.written * 100)) + " %";
    }
    return "page " + std::to_string(progress.done.pages) + " (document " +
           std::to_string(progress.done.documents) + ")";
}

ExitStatus Run(const TurnCommand& command, Console& console)
{
    const std::string input = opc::ToUtf8Path(command.input);
    try
    {
        const ComApartment apartment;
        const Interrupt interrupt;
        const auto onProgress = [&](const JobProgress& progress) {
            interrupt.ThrowIfRaised();
            console.ShowProgress(Describe(progress));
        };
        const JobCount done = RewritePages(command.input, command.output, &RewritePage, onProgress);
        console.PrintOut("turned " + CountOf(done.pages, "page") + " in " +
                         CountOf(done.documents, "document") + ": " + opc::ToUtf8Path(command.output) + "\n");
        return ExitStatus::Success;
    }
    catch (const std::exception& failure)
    {
        console.PrintError(ToOneLine("xpsfilterhost: " + input + ": " + failure.what()) + "\n");
        return ExitStatus::JobFailed;
    }
}

ExitStatus Run(const Notice& notice, Console& console)
{
    notice.status == ExitStatus::Success ? console.PrintOut(notice.text) : console.PrintError(notice.text);
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
    return static_cast<int>(std::visit([&](const auto& what) { return host::Run(what, console); }, command));
}
