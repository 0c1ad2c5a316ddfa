#include "host/commandline.h"

#include <sstream>

#include <CLI/CLI.hpp>

namespace host
{
namespace
{
constexpr const char* kFooter = R"(Examples:
  xpsfilterhost turn letter.xps -o turned.xps
  xpsfilterhost turn "C:\print jobs\report.oxps" -o report-turned.oxps

Exit status: 0 done, 1 wrong usage, 2 the document could not be processed;
then one line on stderr names the part at fault and the reason.)";

constexpr const char* kTurnFooter =
    R"(The output appears only when the whole document has been written; an existing
file of that name is then replaced. It must not be the input itself.

Example:
  xpsfilterhost turn letter.xps -o turned.xps)";

std::filesystem::path FromUtf8Path(const std::string& text)
{
    return std::u8string(text.begin(), text.end());
}
} // namespace

std::variant<TurnCommand, Notice> ParseCommandLine(const std::vector<std::string>& arguments)
{
    std::string input;
    std::string output;
    CLI::App app("Runs XPS documents through page filters, offline: no printer, no spooler.",
                 "xpsfilterhost");
    app.require_subcommand(1);
    app.set_version_flag("--version", HOST_VERSION, "Print the version and exit");
    app.footer(kFooter);
    CLI::App* const turn = app.add_subcommand("turn", "Turn every page of a document a quarter turn");
    turn->footer(kTurnFooter);
    turn->add_option("IN", input, "The XPS or OpenXPS document to read")->required();
    turn->add_option("-o,--output", output, "The document to write")->required()->type_name("OUT");
    try
    {
        // The parser takes its arguments from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    }
    catch (const CLI::ParseError& stop)
    {
        std::ostringstream text;
        const bool isHelp = app.exit(stop, text, text) == 0;
        return Notice{isHelp ? ExitStatus::Success : ExitStatus::WrongUsage, text.str()};
    }
    return TurnCommand{FromUtf8Path(input), FromUtf8Path(output)};
}
} // namespace host
