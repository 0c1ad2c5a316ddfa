#include "host/job/joboptions.h"

#include <stdexcept>
#include <type_traits>

#include <CLI/CLI.hpp>

#include "host/opc/files.h"
#include "host/xml/text.h"

namespace host::job
{
CLI::Option* AddText(CLI::App& command, const TextOption& option)
{
    const auto target = option.target;
    const bool isFile = !std::holds_alternative<std::optional<std::string>*>(target);
    const auto take = [target](const std::string& text) {
        std::visit(
            [&](auto* value) {
                if constexpr (std::is_same_v<decltype(value), std::optional<std::string>*>)
                {
                    *value = text;
                }
                else
                {
                    *value = opc::FromUtf8Path(text);
                }
            },
            target);
    };
    const auto findFault = [isFile](const std::string& text) -> std::string {
        if (text.empty())
        {
            return "must not be empty";
        }
        return isFile && text == "-"
                   ? "- is no file; name one, since ZIP archives are not read or written in order"
                   : "";
    };
    return command.add_option_function<std::string>(option.name, take, option.description)
        ->type_name(option.valueName)
        ->check(findFault);
}

void AddModule(CLI::App& command, std::optional<std::filesystem::path>& module)
{
    AddText(command,
            {"--module", "FILE", &module, "The filter's DLL (default: the one beside this program)"});
}

void AddJobOptions(CLI::App& command, Job& job)
{
    const TextOption options[] = {
        {"--user-ticket", "FILE", &job.userTicket, "The user's print ticket (default: Letter, upright)"},
        {"--device", "FILE", &job.device, "The device, as a print capabilities document (default: built-in)"},
        {"--printer", "NAME", &job.printer, "A printer of the spooler, with the platform's provider"},
        {"--ns-prefix", "P", &job.privatePrefix, "The driver's private namespace prefix (default: ns0000)"},
        {"--orientation", "NAME", &job.overrides.orientation, "What if: the user's PageOrientation"},
        {"--media",
         "MEDIA",
         &job.overrides.media,
         "What if: the user's PageMediaSize, as ISOA4 or 210x297 (mm)"},
        {"--limits",
         "LIMITS",
         &job.overrides.limits,
         "What if: the printable sheets, MINWxMINH-MAXWxMAXH (mm)"}};
    for (const TextOption& option : options)
    {
        AddText(command, option);
    }
    command.get_option("--printer")->excludes(command.get_option("--device"));
    command.add_option("--tessel-type", job.tesselType, "The driver's page-description type: 1, 7 or 76")
        ->type_name("N");
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
