#include "host/app/commandline.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "host/job/joboptions.h"
#include "host/xml/text.h"

namespace host::app
{
namespace
{
constexpr const char* kFooter = R"(Examples (sample.xps stands for any XPS or OpenXPS document):
  xpsfilterhost run sample.xps -o out.xps
  xpsfilterhost run sample.xps --dry-run --orientation Landscape --media ISOA4
  xpsfilterhost tickets sample.xps
  xpsfilterhost batch cases.txt
  xpsfilterhost diff sample.xps out.xps

Lengths are millimetres.
Exit status: 0 done; 1 the filter failed, with its HRESULT and the part it was at, or batch or
diff found a difference; 2 the document, a file or an argument cannot be used; 130 stopped by
Ctrl-C. A failure is one line on stderr; batch has one for each row of its table that cannot
be used.)";

constexpr const char* kRunFooter =
    R"(Prints one line for each page, or for a run of equal pages: what the filter decided, the size
of the page and of its sheet before and after, in millimetres, and why. --details adds the
tickets and the limits. The output appears only when the whole document has
been written; an existing file of that name is then replaced. It must not be the input
itself. --report writes a page of HTML that shows it all, also when the run fails.

Lengths of --media and --limits are millimetres, those of --json micrometres.

Examples (sample.xps stands for any XPS or OpenXPS document):
  xpsfilterhost run sample.xps -o out.xps
  xpsfilterhost run sample.xps -o out.xps --report out.html --again
  xpsfilterhost run sample.xps -o out.xps --media ISOA3 --limits 76.2x127-215.9x355.6
  xpsfilterhost run sample.xps --dry-run --json --orientation Landscape)";

constexpr const char* kTicketsFooter =
    R"(Prints, for the job, each document and each page, its own ticket and the effective one, and
for each value of that the level that it comes from: page, document, job, user, or the
driver's default ticket; or the device, where it does not take what was asked for.
Lengths in tickets are micrometres; those of --media and --limits are millimetres (mm).

Examples (sample.xps stands for any XPS or OpenXPS document):
  xpsfilterhost tickets sample.xps
  xpsfilterhost tickets sample.xps --media ISOA3 --limits 76.2x127-215.9x355.6
  xpsfilterhost tickets sample.xps --tessel-type 1)";

constexpr const char* kBatchFooter =
    R"(CASES is a text, one line a case, with "|" between its four columns; "#" starts a comment:

  # document  | options of run            | device     | expected
  sample.xps  |                           |            | passed turned passed refitted turned+refitted
  sample.xps  | --user-ticket a4.xml      | duplex.xml | passed*3 refitted turned+refitted
  broken.xps  | --media 210x297           |            | passed failed 0x80070005
  letter.txt  |                           |            | unusable

Expected is what becomes of each page, in order, "*N" for N alike; then, where the job does
not come to its end, "failed", with or without the filter's HRESULT, or "unusable" for a
document that cannot be read. Paths start at the table's folder; lengths are millimetres.
No document is written.

Prints one line a case, and for each page that differs what was expected, what it became
and why. Exit status: 0 all as expected; 1 something differs; 2 a line of the table cannot
be used.

Examples (cases.txt stands for any table):
  xpsfilterhost batch cases.txt
  xpsfilterhost batch cases.txt --module pagevalidatefilter.dll)";

constexpr const char* kDiffFooter =
    R"(Prints one line a part: identical, changed, added or removed; and for a changed one where it
differs first, with what it says in A and in B.

Parts are compared by what they hold, however it is stored: XML as XML, whatever the encoding,
the prefixes, the order of attributes, comments and blanks between elements; relationships by
their targets and content types as sets; anything else byte by byte. Part names agree in any
case. Exit status: 0 the same; 1 something differs; 2 a document cannot be used.

Examples (sample.xps and out.xps stand for any XPS or OpenXPS documents):
  xpsfilterhost diff sample.xps out.xps
  xpsfilterhost diff sample.xps out.xps --changes)";

void AddInput(CLI::App& command, std::filesystem::path& input)
{
    job::AddText(command, "IN", input, "The XPS or OpenXPS document to read")->required();
}

CLI::App* AddRun(CLI::App& app, RunCommand& command)
{
    CLI::App* const run = app.add_subcommand("run", "Run the filter over a document");
    run->footer(kRunFooter);
    AddInput(*run, command.job.document);
    job::AddJobOptions(*run, command.job);
    job::AddModule(*run, command.job.module);
    job::AddAcceptMalformed(*run, command.job.acceptsMalformed);
    CLI::Option* const output =
        job::AddText(*run, "-o,--output", command.job.output, "The document to write")->type_name("OUT");
    const CLI::Option* const dryRun =
        run->add_flag("--dry-run")->description("Write no document")->excludes(output);
    run->add_option("--compression", command.job.compression, "How hard to compress new parts (default: 6)")
        ->type_name("0-9")
        ->check(CLI::Range(0, 9));
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
    job::AddText(*run, "--report", command.report, "Write a page that shows what became of each page")
        ->type_name("HTML");
    run->add_flag(
           "--again", command.runsAgain, "Tell what the filter would change if it ran over OUT once more")
        ->needs(output);
    run->final_callback([output, dryRun] {
        if (output->empty() && dryRun->empty())
        {
            throw CLI::RequiredError("--output or --dry-run");
        }
    });
    return run;
}

CLI::App* AddTickets(CLI::App& app, TicketsCommand& command)
{
    CLI::App* const tickets =
        app.add_subcommand("tickets", "Show each level's ticket and where its values come from");
    tickets->footer(kTicketsFooter);
    AddInput(*tickets, command.job.document);
    job::AddJobOptions(*tickets, command.job);
    tickets->add_flag(
        "--json", command.asJson, "Print one JSON object for the job, each document and each page");
    return tickets;
}

CLI::App* AddBatch(CLI::App& app, BatchCommand& command)
{
    CLI::App* const batch = app.add_subcommand("batch", "Run the filter over a table of cases");
    batch->footer(kBatchFooter);
    job::AddText(*batch, "CASES", command.input, "The table of documents and what is expected of them")
        ->required();
    job::AddModule(*batch, command.module);
    job::AddText(
        *batch, "--record", command.record, "Write the table with what happens now as what is expected")
        ->type_name("OUT");
    job::AddText(*batch, "--junit", command.junit, "Write the results for a test server")->type_name("FILE");
    return batch;
}

const CLI::App* AddDiff(CLI::App& app, DiffCommand& command)
{
    CLI::App* const diff = app.add_subcommand("diff", "Compare two documents part by part");
    diff->footer(kDiffFooter);
    job::AddText(*diff, "A", command.input, "An XPS or OpenXPS document")->required();
    job::AddText(*diff, "B", command.other, "What it is compared with")->required();
    diff->add_flag("--changes", command.showsChangesOnly, "Leave out parts that are identical");
    return diff;
}

Notice RefuseArguments(const std::string& fault)
{
    return {ExitStatus::Unusable,
            "xpsfilterhost: " + fault + (fault.ends_with('?') ? " See --help\n" : "; see --help\n")};
}

/// Throws std::runtime_error if the first argument is neither a command nor an option.
void RequireCommand(const std::vector<std::string>& arguments, const std::array<const CLI::App*, 4>& parsers)
{
    std::vector<std::string> names;
    std::string all;
    for (const CLI::App* parser : parsers)
    {
        names.push_back(parser->get_name());
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
    app.footer(kFooter);

    RunCommand run;
    TicketsCommand tickets;
    BatchCommand batch;
    DiffCommand diff;
    const CLI::App* const runParser = AddRun(app, run);
    const CLI::App* const ticketsParser = AddTickets(app, tickets);
    const CLI::App* const batchParser = AddBatch(app, batch);
    const std::array<const CLI::App*, 4> parsers{runParser, ticketsParser, batchParser, AddDiff(app, diff)};
    try
    {
        RequireCommand(arguments, parsers);
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
        const auto* const parser = std::find_if(
            std::begin(parsers), std::end(parsers), [](const CLI::App* each) { return each->parsed(); });
        const std::string fault =
            job::DescribeParseError(app, parser == std::end(parsers) ? app : **parser, stop);
        return RefuseArguments(fault);
    }
    catch (const std::runtime_error& fault)
    {
        return RefuseArguments(fault.what());
    }
    if (runParser->parsed())
    {
        return run;
    }
    if (ticketsParser->parsed())
    {
        return tickets;
    }
    return batchParser->parsed() ? Command(batch) : Command(diff);
}
} // namespace host::app
