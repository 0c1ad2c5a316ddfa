#include "host/job/joboptions.h"

#include <stdexcept>
#include <type_traits>

#include <CLI/CLI.hpp>

#include "host/opc/files.h"
#include "host/xml/text.h"

namespace host::job
{
namespace
{
void Assign(std::optional<std::string>& value, const std::string& text)
{
    value = text;
}

void Assign(std::filesystem::path& value, const std::string& text)
{
    value = opc::FromUtf8Path(text);
}

void Assign(std::optional<std::filesystem::path>& value, const std::string& text)
{
    value = opc::FromUtf8Path(text);
}

template <typename Value>
CLI::Option* AddTextTo(CLI::App& command, const char* name, Value& value, const char* description)
{
    constexpr bool isFile = !std::is_same_v<Value, std::optional<std::string>>;
    return command
        .add_option_function<std::string>(
            name, [&value](const std::string& text) { Assign(value, text); }, description)
        ->check([](const std::string& text) {
            return std::string(
                text.empty() ? "must not be empty"
                : isFile && text == "-"
                    ? "- is no file; name one, since ZIP archives are not read or written in order"
                    : "");
        });
}
} // namespace

CLI::Option* AddText(CLI::App& command,
                     const char* name,
                     std::optional<std::string>& value,
                     const char* description)
{
    return AddTextTo(command, name, value, description);
}

CLI::Option* AddText(CLI::App& command,
                     const char* name,
                     std::filesystem::path& value,
                     const char* description)
{
    return AddTextTo(command, name, value, description);
}

CLI::Option* AddText(CLI::App& command,
                     const char* name,
                     std::optional<std::filesystem::path>& value,
                     const char* description)
{
    return AddTextTo(command, name, value, description);
}

void AddModule(CLI::App& command, std::optional<std::filesystem::path>& module)
{
    AddText(command, "--module", module, "The filter's DLL (default: the one beside this program)")
        ->type_name("FILE");
}

void AddJobOptions(CLI::App& command, Job& job)
{
    AddText(command, "--user-ticket", job.userTicket, "The user's print ticket (default: Letter, upright)")
        ->type_name("FILE");
    CLI::Option* const device = AddText(command,
                                        "--device",
                                        job.device,
                                        "The device, as a print capabilities document (default: built-in)")
                                    ->type_name("FILE");
    AddText(command, "--printer", job.printer, "A printer of the spooler, with the platform's provider")
        ->type_name("NAME")
        ->excludes(device);
    command.add_option("--tessel-type", job.tesselType, "The driver's page-description type: 1, 7 or 76")
        ->type_name("N");
    AddText(
        command, "--ns-prefix", job.privatePrefix, "The driver's private namespace prefix (default: ns0000)")
        ->type_name("P");
    tickets::TicketOverrides& overrides = job.overrides;
    AddText(command, "--orientation", overrides.orientation, "What if: the user's PageOrientation")
        ->type_name("NAME");
    AddText(
        command, "--media", overrides.media, "What if: the user's PageMediaSize, as ISOA4 or 210x297 (mm)")
        ->type_name("MEDIA");
    AddText(command, "--limits", overrides.limits, "What if: the printable sheets, MINWxMINH-MAXWxMAXH (mm)")
        ->type_name("LIMITS");
    command.add_flag(
        "--override", job.overridesDocument, "Let the what-if options win over the document's tickets");
    command
        .add_option("--paper", job.paper, "What the user's locale prints on: Letter or A4 (default: its own)")
        ->type_name("PAPER")
        ->transform(CLI::IsMember(std::vector<std::string>{"Letter", "A4"}, CLI::ignore_case));
}

void AddAcceptMalformed(CLI::App& command, bool& acceptsMalformed)
{
    command.add_flag(
        "--accept-malformed", acceptsMalformed, "Take a page whose new markup is malformed all the same");
}

std::string DescribeParseError(const CLI::App& root, const CLI::App& command, const CLI::ParseError& fault)
{
    const std::vector<std::string> unexpected = root.remaining(true);
    if (unexpected.empty())
    {
        return fault.what();
    }
    const std::string& first = unexpected.front();
    if (!first.starts_with('-'))
    {
        return first + " is one argument too many";
    }
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options())
    {
        for (const std::string& name : option->get_lnames())
        {
            names.push_back("--" + name);
        }
    }
    const std::string nearest =
        first.starts_with("--") ? xml::FindNearest(first.substr(0, first.find('=')), names) : "";
    return first + " is no option" + (command.get_name().empty() ? "" : " of " + command.get_name()) +
           (nearest.empty() ? "" : "; did you mean " + nearest + "?");
}

Job ParseJobOptions(const std::string& options)
{
    Job job;
    CLI::App app;
    app.allow_windows_style_options(false);
    app.set_help_flag();
    AddJobOptions(app, job);
    AddModule(app, job.module);
    AddAcceptMalformed(app, job.acceptsMalformed);
    try
    {
        app.parse(options);
    }
    catch (const CLI::ParseError& fault)
    {
        throw std::runtime_error(DescribeParseError(app, app, fault));
    }
    return job;
}
} // namespace host::job
