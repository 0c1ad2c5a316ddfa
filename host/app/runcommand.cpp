#include "host/app/commandline.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "host/app/console.h"
#include "host/app/interrupt.h"
#include "host/app/runreport.h"
#include "host/app/stopwatch.h"
#include "host/app/whatif.h"
#include "host/job/jobenvironment.h"
#include "host/job/joboutcome.h"
#include "host/job/runjob.h"
#include "host/opc/files.h"
#include "host/pipeline/resulttext.h"
#include "host/report/html/htmltext.h"
#include "host/report/pagejson.h"
#include "host/report/pagetable.h"
#include "host/report/pagewords.h"
#include "host/xml/text.h"
#include "platform/win32.h"

namespace host::app
{
namespace
{
using OptionalPath = std::optional<std::filesystem::path>;

bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other)
{
    std::error_code missing;
    if (std::filesystem::equivalent(one, other, missing))
    {
        return true;
    }
    // A file that does not exist yet has only its name, whose case does not count.
    const std::wstring left = std::filesystem::weakly_canonical(std::filesystem::absolute(one)).wstring();
    const std::wstring right = std::filesystem::weakly_canonical(std::filesystem::absolute(other)).wstring();
    return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_EQUAL;
}

void RequireAnother(const char* what,
                    const OptionalPath& written,
                    const char* other,
                    const OptionalPath& path)
{
    if (written && path && IsSameFile(*written, *path))
    {
        throw opc::FileError(*written, std::string(what) + " would replace " + other);
    }
}

/// Throws opc::FileError when the run would write a file that it reads, or two files of one name.
void RequireFilesOfTheirOwn(const RunCommand& command)
{
    const std::pair<const char*, OptionalPath> read[] = {{"the input", command.job.document},
                                                         {"the user's ticket", command.job.userTicket},
                                                         {"the device's description", command.job.device},
                                                         {"the filter", job::FilterModuleOf(command.job)}};
    for (const auto& [other, path] : read)
    {
        RequireAnother("the output", command.job.output, other, path);
        RequireAnother("the report", command.report, other, path);
    }
    RequireAnother("the report", command.report, "the output", command.job.output);
}

/// A run of the filter over a document. Shows it while it goes on, and writes its report if one is wanted.
class Run final : public job::JobListener
{
public:
    /// Throws opc::FileError for a report that cannot be written.
    Run(const RunCommand& command, Console& console, const Interrupt& interrupt)
        : m_command(command),
          m_console(console),
          m_interrupt(interrupt),
          m_table(command.showsDetails, Console::Width())
    {
        if (command.report)
        {
            m_report.emplace(*command.report);
        }
    }

    /// Throws what JobEnvironment and RunJob throw, and opc::PackageError for a document at which the filter
    /// failed because it cannot be read.
    ExitStatus Execute();

    /// Shows that the run has ended early, in the report and as JSON.
    void ShowFailure(const char* how, const job::JobOutcome& outcome, const std::string& message);

    bool WantsDetails() const override { return m_report.has_value(); }

    void OnStart(std::size_t pages) override { m_allPages = pages; }

    void OnPage(const report::PageReport& page) override
    {
        m_decisions.Add(report::Decide(page));
        if (m_whatIf)
        {
            m_whatIf->Add(page);
        }
        if (page.givenOrigin == report::kUserPaper && !m_command.job.paper)
        {
            m_paper = page.given->mediaName;
        }
        if (!page.markupFault.empty())
        {
            m_faults[page.number] = page.markupFault;
        }
        const bool isPassed = report::Decide(page) == report::Decision::Passed;
        if (m_command.pages.Contains(page.number) && !(m_command.showsChangesOnly && isPassed))
        {
            m_console.PrintOut(m_command.asJson ? report::FormatJson(page) : m_table.Add(page));
        }
        m_console.ShowProgress("page " + std::to_string(page.number) +
                               (m_allPages > 0 ? " of " + std::to_string(m_allPages) : ""));
        if (m_report)
        {
            m_report->TakePage(page);
        }
    }

    void OnCall(const pipeline::TracedCall& call) override
    {
        if (m_command.showsCalls)
        {
            m_console.PrintError(pipeline::FormatResult(call.result) + " " + std::string(call.method) +
                                 (call.subject.empty() ? "" : " ") + call.subject + "\n");
        }
        if (m_report)
        {
            m_report->TakeCall(call);
        }
    }

    void OnWriting(double fraction) override
    {
        m_interrupt.ThrowIfRaised();
        m_console.ShowProgress("writing, " + std::to_string(static_cast<int>(fraction * 100)) + " %");
    }

    bool IsCancelled() override { return m_interrupt.IsRaised(); }

private:
    ExitStatus RunAgain();
    void PrintFailure(const std::filesystem::path& document, const std::string& failure);
    void WriteReport(const std::string& outcome, const std::string& output);
    std::string FormatOutcome(const char* how,
                              const job::JobOutcome& outcome,
                              const std::string& message) const;
    std::string Summarise(const job::JobOutcome& outcome) const;

    /// Prints for people; JSON has it in objects of its own.
    void PrintText(const std::string& text)
    {
        if (!m_command.asJson)
        {
            m_console.PrintOut(text);
        }
    }

    const RunCommand& m_command;
    Console& m_console;
    const Interrupt& m_interrupt;
    std::optional<report::html::HtmlReport> m_report;
    report::PageTable m_table;
    report::DecisionCounts m_decisions;
    std::size_t m_allPages = 0;
    std::optional<WhatIf> m_whatIf;
    // What a page was given by the locale; empty for no such page.
    std::string m_paper;
    // What is wrong with the new markup of pages that were taken all the same, by their numbers.
    std::map<std::size_t, std::string> m_faults;
    // Empty until it is there.
    std::string m_userTicket;
    bool m_isWritten = false;
    // How the second run ended; empty without one.
    std::string m_secondRun;
    Stopwatch m_watch;
};

/// Shows what the filter would change if it ran over its output. Pages that it would leave alone get no line.
class SecondRunListener final : public job::JobListener
{
public:
    using Show = std::function<void(const report::PageReport&)>;

    /// `faults` are what is wrong with the markup that the first run wrote.
    SecondRunListener(const std::map<std::size_t, std::string>& faults, const Interrupt& interrupt, Show show)
        : m_faults(faults), m_interrupt(interrupt), m_show(std::move(show))
    {
    }

    void OnPage(const report::PageReport& sent) override
    {
        report::PageReport page = sent;
        const auto fault = m_faults.find(page.number);
        page.markupFault = fault == m_faults.end() ? "" : fault->second;
        m_stable += report::IsStable(page) ? 1 : 0;
        m_unstable += !report::IsStable(page) && report::IsJudged(page) ? 1 : 0;
        m_show(page);
    }

    bool IsCancelled() override { return m_interrupt.IsRaised(); }

    std::string Summarise() const
    {
        return xml::CountOf(m_stable, "page") + " stable; " + std::to_string(m_unstable) + " would change" +
               (m_faults.empty() ? "" : "; " + std::to_string(m_faults.size()) + " not judged");
    }

private:
    const std::map<std::size_t, std::string>& m_faults;
    const Interrupt& m_interrupt;
    Show m_show;
    std::size_t m_stable = 0;
    std::size_t m_unstable = 0;
};

ExitStatus Run::Execute()
{
    const job::JobEnvironment environment(m_command.job);
    m_userTicket = environment.UserTicket();
    const tickets::TicketOverrides& options = m_command.job.overrides;
    if (options.orientation || options.media || options.limits)
    {
        m_whatIf.emplace(options, m_userTicket);
    }
    const job::JobOutcome outcome = job::RunJob(m_command.job, m_userTicket, *this);
    if (FAILED(outcome.result))
    {
        m_interrupt.ThrowIfRaised();
        if (outcome.documentFault)
        {
            throw *outcome.documentFault;
        }
        ShowFailure("failed", outcome, DescribeFailure(outcome));
        PrintFailure(m_command.job.document, DescribeFailure(outcome));
        return ExitStatus::FilterFailed;
    }
    m_isWritten = m_command.job.output.has_value();
    PrintText(m_table.Finish() + Summarise(outcome));
    if (const std::string leaks = DescribeLeaks(outcome); !leaks.empty())
    {
        m_console.PrintError("xpsfilterhost: " + leaks + "\n");
    }
    const ExitStatus status = m_command.runsAgain ? RunAgain() : ExitStatus::Done;
    if (m_report)
    {
        WriteReport("done, " + CodeOfResult(outcome.result), "nothing written");
    }
    if (m_command.asJson)
    {
        m_console.PrintOut(FormatOutcome("done", outcome, ""));
    }
    return status;
}

/// Runs the filter over what it has written, without writing anything.
ExitStatus Run::RunAgain()
{
    job::Job second = m_command.job;
    second.document = *std::exchange(second.output, std::nullopt);
    SecondRunListener listener(m_faults, m_interrupt, [&](const report::PageReport& page) {
        if (m_command.asJson)
        {
            m_console.PrintOut(report::FormatSecondRunJson(page));
        }
        else if (!report::IsStable(page))
        {
            m_console.PrintOut("run again: page " + std::to_string(page.number) + " " +
                               report::NameSecondRun(page) + ": " + report::ExplainSecondRun(page) + "\n");
        }
        if (m_report)
        {
            m_report->AddSecondRun(page);
        }
    });
    const job::JobOutcome outcome = job::RunJob(second, m_userTicket, listener);
    m_interrupt.ThrowIfRaised();
    if (FAILED(outcome.result))
    {
        m_secondRun = DescribeFailure(outcome);
        PrintFailure(second.document, m_secondRun);
        return ExitStatus::FilterFailed;
    }
    m_secondRun = listener.Summarise();
    PrintText("run again: " + m_secondRun + "\n");
    return ExitStatus::Done;
}

void Run::ShowFailure(const char* how, const job::JobOutcome& outcome, const std::string& message)
{
    PrintText(m_table.Finish());
    if (m_command.asJson)
    {
        m_console.PrintOut(FormatOutcome(how, outcome, message));
    }
    if (!m_report)
    {
        return;
    }
    try
    {
        const std::string why = xml::ToOneLine(message);
        m_report->AddFailure(outcome.part, why);
        std::string html = "<b>failed</b>, <a href=\"#failed\">" + report::html::EscapeHtml(why) + "</a>";
        const HRESULT answer = m_report->FilterResult();
        if (FAILED(answer) && why.find(pipeline::FormatResult(answer)) == std::string::npos)
        {
            html += "; the filter answered " + CodeOfResult(answer);
        }
        WriteReport(html, "not written");
    }
    catch (const std::exception&)
    {
        // The run's own failure is what counts.
    }
}

void Run::PrintFailure(const std::filesystem::path& document, const std::string& failure)
{
    m_console.PrintError(xml::ToOneLine("xpsfilterhost: " + opc::ToUtf8Path(document) + ": " + failure) +
                         "\n");
}

/// Throws opc::FileError. `output` is what to say of the output if there is none.
void Run::WriteReport(const std::string& outcome, const std::string& output)
{
    const job::Job& job = m_command.job;
    const report::DecisionCounts& decisions = m_report->Decisions();
    std::vector<report::html::SummaryRow> rows = {
        {"Document", CodeOfPath(job.document)},
        {"Outcome", outcome},
        {"Output", m_isWritten ? CodeOfPath(*job.output) : output},
        {"Pages",
         std::to_string(decisions.All()) +
             (decisions.All() < m_allPages ? " of " + std::to_string(m_allPages) : " in all") + ": " +
             decisions.Format()},
    };
    if (!m_secondRun.empty())
    {
        rows.push_back({"Run again", report::html::EscapeHtml(m_secondRun)});
    }
    rows.push_back({"Time", m_watch.FormatElapsed()});
    for (report::html::SummaryRow& row : DescribeSetUp(job, m_userTicket))
    {
        rows.push_back(std::move(row));
    }
    m_report->Finish("Page report: " + opc::ToUtf8Path(job.document.filename()), rows);
}

std::string Run::Summarise(const job::JobOutcome& outcome) const
{
    const auto& output = m_command.job.output;
    return xml::CountOf(outcome.pages, "page") + " in " + xml::CountOf(outcome.documents, "document") + ": " +
           m_decisions.Format() + "; " + m_watch.FormatElapsed() +
           (output ? ": " + opc::ToUtf8Path(*output) : ", nothing written") + "\n" +
           (m_whatIf && !m_command.job.overridesDocument ? m_whatIf->Summarise() : "") +
           (m_paper.empty() ? "" : "the locale chose " + m_paper + " for refitted pages; --paper fixes it\n");
}

/// The last JSON object of a run. `message` is empty for a run that has succeeded.
std::string Run::FormatOutcome(const char* how,
                               const job::JobOutcome& outcome,
                               const std::string& message) const
{
    using report::Json;
    using report::TextOrNull;
    const bool hasAnswer = message.empty() || FAILED(outcome.result);
    Json totals = Json::object();
    for (const auto decision : report::kDecisions)
    {
        totals[report::NameOf(decision)] = m_decisions.Of(decision);
    }
    Json withoutEffect = Json::object();
    if (m_whatIf)
    {
        for (const auto& [name, count] : m_whatIf->WithoutEffect())
        {
            withoutEffect[name] = count;
        }
    }
    const auto& output = m_command.job.output;
    return report::ToJsonLine(
        {{"outcome", how},
         {"message", TextOrNull(message)},
         {"hresult", hasAnswer ? Json(pipeline::FormatResult(outcome.result)) : Json(nullptr)},
         {"name", hasAnswer ? Json(pipeline::NameResult(outcome.result)) : Json(nullptr)},
         {"part", TextOrNull(outcome.part)},
         {"pages", m_decisions.All()},
         {"pagesInAll", m_allPages},
         {"totals", totals},
         {"withoutEffect", withoutEffect},
         {"paper", TextOrNull(m_paper)},
         {"document", opc::ToUtf8Path(m_command.job.document)},
         {"output", message.empty() && output ? Json(opc::ToUtf8Path(*output)) : Json(nullptr)}});
}
} // namespace

ExitStatus Execute(const RunCommand& command, Console& console)
{
    const Interrupt interrupt;
    RequireFilesOfTheirOwn(command);
    Run run(command, console, interrupt);
    ExitStatus status{};
    try
    {
        status = run.Execute();
    }
    catch (const std::exception& failure)
    {
        job::JobOutcome outcome;
        outcome.result = interrupt.IsRaised() ? E_ABORT : S_OK;
        run.ShowFailure(interrupt.IsRaised() ? "interrupted" : "unusable", outcome, failure.what());
        throw;
    }
    interrupt.ThrowIfRaised();
    return status;
}
} // namespace host::app
