#include "host/app/commandline.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "embedded/helptexts.h"
#include "host/job/joboptions.h"
#include "host/tickets/userticket.h"
#include "host/xml/text.h"

namespace host::app
{
namespace
{
/// The text of a help file, without the end of its last line.
std::string HelpOf(std::string_view file)
{
    return std::string(file.substr(0, file.size() - 1));
}

CLI::App* AddCommand(CLI::App& app, const char* name, const char* description, std::string_view help)
{
    CLI::App* const command = app.add_subcommand(name, description);
    command->footer(HelpOf(help));
    return command;
}

job::TextOption InputOf(std::filesystem::path& document)
{
    return {"IN", "TEXT", &document, "The XPS or OpenXPS document to read"};
}

void AddRun(CLI::App& app, RunCommand& command)
{
    CLI::App* const run = AddCommand(app, "run", "Run the filter over a document", kRunHelp);
    job::AddText(*run, InputOf(command.job.document))->required();
    job::AddJobOptions(*run, command.job);
    job::AddModule(*run, command.job.module);
    job::AddAcceptMalformed(*run, command.job.acceptsMalformed);
    CLI::Option* const output =
        job::AddText(*run, {"-o,--output", "OUT", &command.job.output, "The document to write"});
    const CLI::Option* const dryRun =
        run->add_flag("--dry-run")->description("Write no document")->excludes(output);
    run->add_option("--compression", command.job.compression, "How hard to compress new parts (default: 6)")
        ->type_name("0-9")
        ->check(CLI::Range(0, 9));
    // Ends the parsing with a text, as --version does.
    run->add_flag_callback(
        "--list-media",
        [] { throw CLI::CallForVersion(tickets::ListMediaNames(), 0); },
        "Print the names that --media takes and exit");
    run->add_flag("--trace", command.showsCalls, "Print each pipeline call and its HRESULT on stderr");
    run->add_flag("--json",
                  command.asJson,
                  "Print JSON in place of the table: an object a page, and one of the outcome");
    run->add_flag("--details",
                  command.showsDetails,
                  "Print the whole reason, the limits and the tickets below each page");
    run->add_option_function<std::string>(
           "--pages",
           [&command](const std::string& text) { command.pages = PageSelection::Parse(text); },
           "Print these pages only, as 1-3,7")
        ->type_name("PAGES");
    run->add_flag("--changes", command.showsChangesOnly, "Leave out pages that were passed");
    job::AddText(*run,
                 {"--report", "HTML", &command.report, "Write a page that shows what became of each page"});
    run->add_flag(
           "--again", command.runsAgain, "Tell what the filter would change if it ran over OUT once more")
        ->needs(output);
    run->final_callback([output, dryRun] {
        if (output->empty() && dryRun->empty())
        {
            throw CLI::RequiredError("--output or --dry-run");
        }
    });
}

void AddTickets(CLI::App& app, TicketsCommand& command)
{
    CLI::App* const tickets =
        AddCommand(app, "tickets", "Show each level's ticket and where its values come from", kTicketsHelp);
    job::AddText(*tickets, InputOf(command.job.document))->required();
    job::AddJobOptions(*tickets, command.job);
    tickets->add_flag(
        "--json", command.asJson, "Print one JSON object for the job, each document and each page");
}

void AddBatch(CLI::App& app, BatchCommand& command)
{
    CLI::App* const batch = AddCommand(app, "batch", "Run the filter over a table of cases", kBatchHelp);
    job::AddText(*batch,
                 {"CASES", "TEXT", &command.input, "The table of documents and what is expected of them"})
        ->required();
    job::AddModule(*batch, command.module);
    job::AddText(
        *batch,
        {"--record", "OUT", &command.record, "Write the table with what happens now as what is expected"});
    job::AddText(*batch, {"--junit", "FILE", &command.junit, "Write the results for a test server"});
}

void AddDiff(CLI::App& app, DiffCommand& command)
{
    CLI::App* const diff = AddCommand(app, "diff", "Compare two documents part by part", kDiffHelp);
    job::AddText(*diff, {"A", "TEXT", &command.input, "An XPS or OpenXPS document"})->required();
    job::AddText(*diff, {"B", "TEXT", &command.other, "What it is compared with"})->required();
    diff->add_flag("--changes", command.showsChangesOnly, "Leave out parts that are identical");
}

Notice RefuseArguments(const std::string& fault)
{
    return {ExitStatus::Unusable,
            "xpsfilterhost: " + fault + (fault.ends_with('?') ? " See --help\n" : "; see --help\n")};
}

/// Throws std::runtime_error if the first argument is neither a command nor an option.
void RequireCommand(const std::vector<std::string>& arguments, const CLI::App& app)
{
    std::vector<std::string> names;
    std::string all;
    for (const CLI::App* const command : app.get_subcommands(nullptr))
    {
        names.push_back(command->get_name());
        all += (all.empty() ? "" : ", ") + names.back();
    }
    const std::string word = arguments.empty() ? std::string() : arguments.front();
    if (word.starts_with('-') || std::find(names.begin(), names.end(), word) != names.end())
    {
        return;
    }
    const std::string nearest = xml::FindNearest(word, names);
    throw std::runtime_error(
        (word.empty() ? "no command" : word + " is no command") +
        (nearest.empty() ? "; the commands are " + all : "; did you mean " + nearest + "?"));
}
} // namespace

PageSelection PageSelection::Parse(std::string_view text)
{
    PageSelection selection;
    for (std::size_t start = 0; start <= text.size();)
    {
        const std::size_t end = std::min(text.find(',', start), text.size());
        const std::string_view range = text.substr(start, end - start);
        const std::size_t dash = std::min(range.find('-'), range.size());
        const auto first = xml::ParseNumber<std::size_t>(range.substr(0, dash), 10);
        const auto last =
            dash < range.size() ? xml::ParseNumber<std::size_t>(range.substr(dash + 1), 10) : first;
        if (!first || !last || *first == 0 || *first > *last)
        {
            throw std::runtime_error("--pages " + std::string(text) + ": is no list of pages as 1-3,7");
        }
        selection.m_ranges.emplace_back(*first, *last);
        start = end + 1;
    }
    return selection;
}

bool PageSelection::Contains(std::size_t page) const
{
    return m_ranges.empty() || std::any_of(m_ranges.begin(), m_ranges.end(), [&](const auto& range) {
               return page >= range.first && page <= range.second;
           });
}

Command ParseCommandLine(const std::vector<std::string>& arguments)
{
    CLI::App app("Runs XPS documents through the page-validation filter, offline: no printer, no spooler.",
                 "xpsfilterhost");
    // Under Wine a path may start with a slash.
    app.allow_windows_style_options(false);
    app.require_subcommand(1);
    app.set_version_flag("--version", "xpsfilterhost " HOST_VERSION, "Print name and version and exit");
    app.footer(HelpOf(kProgramHelp));

    RunCommand run;
    TicketsCommand tickets;
    BatchCommand batch;
    DiffCommand diff;
    AddRun(app, run);
    AddTickets(app, tickets);
    AddBatch(app, batch);
    AddDiff(app, diff);
    try
    {
        RequireCommand(arguments, app);
        // The parser takes its arguments from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    }
    catch (const CLI::ParseError& stop)
    {
        std::ostringstream text;
        if (app.exit(stop, text, text) == 0)
        {
            return Notice{ExitStatus::Done, text.str()};
        }
        const auto parsed = app.get_subcommands();
        return RefuseArguments(job::DescribeParseError(app, parsed.empty() ? app : *parsed.front(), stop));
    }
    catch (const std::runtime_error& fault)
    {
        return RefuseArguments(fault.what());
    }
    return app.got_subcommand("run")       ? Command(run)
           : app.got_subcommand("tickets") ? Command(tickets)
           : app.got_subcommand("batch")   ? Command(batch)
                                           : Command(diff);
}
} // namespace host::app
