#include "host/commandline.h"

#include <sstream>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "host/paths.h"

namespace host
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
Exit status: 0 done; 1 the filter failed, with its HRESULT and the part it was at, or was
stopped by Ctrl-C, or batch or diff found a difference; 2 the document, a file or an
argument cannot be used. Failures are one line on stderr.)";

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

/// The options as they are typed, before they are taken for a command.
struct Typed
{
    std::string input;
    std::string output;
    std::string other;
    std::string userTicket;
    std::string device;
    std::string printer;
    std::string privatePrefix;
    std::string orientation;
    std::string media;
    std::string limits;
    std::string module;
    std::int32_t tesselType = 0;
    bool isDryRun = false;
    bool showsCalls = false;
    bool asJson = false;
    bool showsChangesOnly = false;
    std::string report;
    bool runsAgain = false;
    bool acceptsMalformed = false;
};

std::optional<std::filesystem::path> ToPath(const std::string& text)
{
    return text.empty() ? std::nullopt : std::optional(FromUtf8Path(text));
}

std::optional<std::string> ToText(const std::string& text)
{
    return text.empty() ? std::nullopt : std::optional(text);
}

void AddInput(CLI::App& command, Typed& typed)
{
    command.add_option("IN", typed.input, "The XPS or OpenXPS document to read")->required();
}

void AddModule(CLI::App& command, Typed& typed)
{
    command.add_option("--module", typed.module, "The filter's DLL (default: the one beside this program)")
        ->type_name("FILE");
}

void AddSettingOptions(CLI::App& command, Typed& typed)
{
    command
        .add_option("--user-ticket", typed.userTicket, "The user's print ticket (default: Letter, upright)")
        ->type_name("FILE");
    command
        .add_option(
            "--device", typed.device, "The device, as a print capabilities document (default: built-in)")
        ->type_name("FILE");
    command.add_option("--printer", typed.printer, "A printer of the spooler, with the platform's provider")
        ->type_name("NAME");
    command.add_option("--tessel-type", typed.tesselType, "The driver's page-description type: 1, 7 or 76")
        ->type_name("N");
    command
        .add_option(
            "--ns-prefix", typed.privatePrefix, "The driver's private namespace prefix (default: ns0000)")
        ->type_name("P");
    command.add_option("--orientation", typed.orientation, "What if: the user's PageOrientation")
        ->type_name("NAME");
    command.add_option("--media", typed.media, "What if: the user's PageMediaSize, as ISOA4 or 210x297 (mm)")
        ->type_name("MEDIA");
    command.add_option("--limits", typed.limits, "What if: the printable sheets, MINWxMINH-MAXWxMAXH (mm)")
        ->type_name("LIMITS");
    AddModule(command, typed);
    command.get_option("--device")->excludes("--printer");
}

void AddAcceptMalformed(CLI::App& command, Typed& typed)
{
    command.add_flag("--accept-malformed",
                     typed.acceptsMalformed,
                     "Take a page whose new markup is malformed all the same");
}

JobSetting ToSetting(const CLI::App& command, const Typed& typed)
{
    JobSetting setting;
    setting.userTicket = ToPath(typed.userTicket);
    setting.device = ToPath(typed.device);
    setting.printer = ToText(typed.printer);
    setting.privatePrefix = ToText(typed.privatePrefix);
    setting.module = ToPath(typed.module);
    setting.acceptsMalformed = typed.acceptsMalformed;
    if (command.count("--tessel-type") > 0)
    {
        setting.tesselType = typed.tesselType;
    }
    setting.overrides.orientation = ToText(typed.orientation);
    setting.overrides.media = ToText(typed.media);
    setting.overrides.limits = ToText(typed.limits);
    if (setting.privatePrefix)
    {
        setting.overrides.privatePrefix = *setting.privatePrefix;
    }
    return setting;
}
} // namespace

Command ParseCommandLine(const std::vector<std::string>& arguments)
{
    Typed typed;
    CLI::App app("Runs XPS documents through the page-validation filter, offline: no printer, no spooler.",
                 "xpsfilterhost");
    // Under Wine a path may begin with a slash.
    app.allow_windows_style_options(false);
    app.require_subcommand(1);
    app.set_version_flag("--version", HOST_VERSION, "Print the version and exit");
    app.footer(kFooter);

    CLI::App* const run = app.add_subcommand("run", "Run the filter over a document");
    run->footer(kRunFooter);
    AddInput(*run, typed);
    AddSettingOptions(*run, typed);
    AddAcceptMalformed(*run, typed);
    run->add_option("-o,--output", typed.output, "The document to write")->type_name("OUT");
    run->add_flag("--dry-run", typed.isDryRun, "Write no document")->excludes("-o");
    run->add_flag("--trace", typed.showsCalls, "Print each pipeline call and its HRESULT on stderr");
    run->add_flag("--json", typed.asJson, "Print one JSON object a page in place of the table");
    run->add_option("--report", typed.report, "Write a page that shows what became of each page")
        ->type_name("HTML");
    run->add_flag(
           "--again", typed.runsAgain, "Tell what the filter would change if it ran over OUT once more")
        ->needs("-o");

    CLI::App* const tickets =
        app.add_subcommand("tickets", "Show each level's ticket and where its values come from");
    tickets->footer(kTicketsFooter);
    AddInput(*tickets, typed);
    AddSettingOptions(*tickets, typed);

    CLI::App* const batch = app.add_subcommand("batch", "Run the filter over a table of cases");
    batch->footer(kBatchFooter);
    batch->add_option("CASES", typed.input, "The table of documents and what is expected of them")
        ->required();
    AddModule(*batch, typed);

    CLI::App* const diff = app.add_subcommand("diff", "Compare two documents part by part");
    diff->footer(kDiffFooter);
    diff->add_option("A", typed.input, "An XPS or OpenXPS document")->required();
    diff->add_option("B", typed.other, "What it is compared with")->required();
    diff->add_flag("--changes", typed.showsChangesOnly, "Leave out parts that are identical");
    try
    {
        // The parser takes its arguments from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        if (run->parsed() && typed.output.empty() && !typed.isDryRun)
        {
            throw CLI::RequiredError("--output or --dry-run");
        }
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
    if (tickets->parsed())
    {
        return TicketsCommand{FromUtf8Path(typed.input), ToSetting(*tickets, typed)};
    }
    if (batch->parsed())
    {
        return BatchCommand{FromUtf8Path(typed.input), ToPath(typed.module)};
    }
    if (diff->parsed())
    {
        return DiffCommand{FromUtf8Path(typed.input), FromUtf8Path(typed.other), typed.showsChangesOnly};
    }
    return RunCommand{FromUtf8Path(typed.input),
                      ToPath(typed.output),
                      ToSetting(*run, typed),
                      typed.showsCalls,
                      typed.asJson,
                      ToPath(typed.report),
                      typed.runsAgain};
}

JobSetting ParseSetting(const std::string& options)
{
    Typed typed;
    CLI::App app;
    app.allow_windows_style_options(false);
    app.set_help_flag();
    AddSettingOptions(app, typed);
    AddAcceptMalformed(app, typed);
    try
    {
        app.parse(options);
    }
    catch (const CLI::ParseError& fault)
    {
        throw std::runtime_error(fault.what());
    }
    return ToSetting(app, typed);
}
} // namespace host
