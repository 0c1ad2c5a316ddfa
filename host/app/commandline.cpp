#include "host/app/commandline.h"

#include <sstream>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "host/job/joboptions.h"

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

Lengths are typed in millimetres; page sizes are told in pixels of 1/96 inch.
Exit status: 0 done; 1 the filter failed, with its HRESULT and the part it was at, or batch or
diff found a difference; 2 the document, a file or an argument cannot be used; 130 stopped by
Ctrl-C. A failure is one line on stderr; batch has one for each row of its table that cannot
be used.)";

constexpr const char* kRunFooter =
    R"(Prints one line a page: its size before and after in pixels of 1/96 inch, the orientation,
the medium and the limits that its ticket asks for in millimetres, what the filter decided
and why, and its ticket, old and new. The output appears only when the whole document has
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
    run->add_flag("--json", command.asJson, "Print one JSON object a page in place of the table");
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
    return tickets;
}

CLI::App* AddBatch(CLI::App& app, BatchCommand& command)
{
    CLI::App* const batch = app.add_subcommand("batch", "Run the filter over a table of cases");
    batch->footer(kBatchFooter);
    job::AddText(*batch, "CASES", command.input, "The table of documents and what is expected of them")
        ->required();
    job::AddModule(*batch, command.module);
    return batch;
}

CLI::App* AddDiff(CLI::App& app, DiffCommand& command)
{
    CLI::App* const diff = app.add_subcommand("diff", "Compare two documents part by part");
    diff->footer(kDiffFooter);
    job::AddText(*diff, "A", command.input, "An XPS or OpenXPS document")->required();
    job::AddText(*diff, "B", command.other, "What it is compared with")->required();
    diff->add_flag("--changes", command.showsChangesOnly, "Leave out parts that are identical");
    return diff;
}
} // namespace

Command ParseCommandLine(const std::vector<std::string>& arguments)
{
    CLI::App app("Runs XPS documents through the page-validation filter, offline: no printer, no spooler.",
                 "xpsfilterhost");
    // Under Wine a path may start with a slash.
    app.allow_windows_style_options(false);
    app.require_subcommand(1);
    app.set_version_flag("--version", HOST_VERSION, "Print the version and exit");
    app.footer(kFooter);

    RunCommand run;
    TicketsCommand tickets;
    BatchCommand batch;
    DiffCommand diff;
    const CLI::App* const runParser = AddRun(app, run);
    const CLI::App* const ticketsParser = AddTickets(app, tickets);
    const CLI::App* const batchParser = AddBatch(app, batch);
    AddDiff(app, diff);
    try
    {
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
        return Notice{ExitStatus::Unusable, std::string("xpsfilterhost: ") + stop.what() + "; see --help\n"};
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
