#include "host/app/commands.h"

#include <map>
#include <string>
#include <system_error>
#include <utility>

#include <nlohmann/json.hpp>

#include "host/app/interrupt.h"
#include "host/app/runreport.h"
#include "host/app/stopwatch.h"
#include "host/app/whatif.h"
#include "host/job/jobenvironment.h"
#include "host/job/joboutcome.h"
#include "host/job/runjob.h"
#include "host/opc/files.h"
#include "host/pipeline/resulttext.h"
#include "host/report/decisioncounts.h"
#include "host/report/pagetable.h"
#include "host/report/secondrun.h"
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

/// Shows a run while it goes on, and collects its report where one is wanted.
class RunListener final : public job::JobListener
{
public:
    /// Without `report` none is made.
    RunListener(const RunCommand& command, Console& console, const Interrupt& interrupt, RunReport* report)
        : m_command(command),
          m_console(console),
          m_interrupt(interrupt),
          m_report(report),
          m_table(command.showsDetails, Console::Width())
    {
    }

    /// To be called before the run when it has what-if options.
    void WatchOptions(const std::string& userTicket)
    {
        m_whatIf.emplace(m_command.job.overrides, userTicket);
    }

    report::Detail WantedDetail() const override
    {
        return m_report != nullptr ? report::Detail::All : report::Detail::None;
    }

    void OnStart(std::size_t pages) override
    {
        m_allPages = pages;
        if (m_report != nullptr)
        {
            m_report->NoteAllPages(pages);
        }
    }

    void OnPage(const report::PageReport& page) override
    {
        m_decisions.Add(page);
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
        ShowPage(page);
        if (m_report != nullptr)
        {
            m_report->TakePage(page);
        }
    }

    void OnCall(const pipeline::TracedCall& call) override
    {
        if (m_command.showsCalls)
        {
            ShowCall(call);
        }
        if (m_report != nullptr)
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

    /// What is wrong with the new markup of pages that were taken all the same, by their numbers.
    const std::map<std::size_t, std::string>& MarkupFaults() const noexcept { return m_faults; }

    /// Prints what the table still holds back.
    void EndTable()
    {
        if (!m_command.asJson)
        {
            m_console.PrintOut(m_table.Finish());
        }
    }

    /// The last JSON object of a run, however it ended.
    std::string FormatOutcome(const char* how,
                              const job::JobOutcome& outcome,
                              const std::string& message) const
    {
        using Json = nlohmann::ordered_json;
        const bool isDone = message.empty();
        const bool hasAnswer = isDone || FAILED(outcome.result);
        Json totals = Json::object();
        for (const auto decision : report::kDecisions)
        {
            totals[report::NameOf(decision)] = m_decisions.Of(decision);
        }
        Json withoutEffect = Json::object();
        for (const auto& [name, count] :
             m_whatIf ? m_whatIf->WithoutEffect() : decltype(m_whatIf->WithoutEffect())())
        {
            withoutEffect[name] = count;
        }
        const auto orNull = [](const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); };
        const auto& output = m_command.job.output;
        const Json object = {
            {"outcome", how},
            {"message", orNull(message)},
            {"hresult", hasAnswer ? Json(pipeline::FormatResult(outcome.result)) : Json(nullptr)},
            {"name", hasAnswer ? Json(pipeline::NameResult(outcome.result)) : Json(nullptr)},
            {"part", orNull(outcome.part)},
            {"pages", m_decisions.All()},
            {"pagesInAll", m_allPages},
            {"totals", totals},
            {"withoutEffect", withoutEffect},
            {"paper", orNull(m_paper)},
            {"document", opc::ToUtf8Path(m_command.job.document)},
            {"output", isDone && output ? Json(opc::ToUtf8Path(*output)) : Json(nullptr)}};
        return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
    }

    std::string Summarise(const job::JobOutcome& outcome) const
    {
        const auto& output = m_command.job.output;
        return xml::CountOf(outcome.pages, "page") + " in " + xml::CountOf(outcome.documents, "document") +
               ": " + m_decisions.Format() + "; " + m_watch.FormatElapsed() +
               (output ? ": " + opc::ToUtf8Path(*output) : ", nothing written") + "\n" +
               (m_whatIf && !m_command.job.overridesDocument ? m_whatIf->Summarise() : "") +
               (m_paper.empty() ? ""
                                : "the locale chose " + m_paper + " for refitted pages; --paper fixes it\n");
    }

private:
    void ShowPage(const report::PageReport& page)
    {
        const bool isPassed = report::Decide(page) == report::Decision::Passed;
        if (m_command.pages.Contains(page.number) && !(m_command.showsChangesOnly && isPassed))
        {
            m_console.PrintOut(m_command.asJson ? report::FormatJson(page) : m_table.Add(page));
        }
        m_console.ShowProgress("page " + std::to_string(page.number) +
                               (m_allPages > 0 ? " of " + std::to_string(m_allPages) : ""));
    }

    void ShowCall(const pipeline::TracedCall& call)
    {
        m_console.PrintError(pipeline::FormatResult(call.result) + " " + std::string(call.method) +
                             (call.subject.empty() ? "" : " ") + call.subject + "\n");
    }

    const RunCommand& m_command;
    Console& m_console;
    const Interrupt& m_interrupt;
    RunReport* m_report;
    report::PageTable m_table;
    report::DecisionCounts m_decisions;
    std::size_t m_allPages = 0;
    std::optional<WhatIf> m_whatIf;
    // What a page was given by the locale; empty for no such page.
    std::string m_paper;
    std::map<std::size_t, std::string> m_faults;
    Stopwatch m_watch;
};

/// Shows what the filter would change if it ran over its output. Pages that it would leave alone get no line.
class SecondRunListener final : public job::JobListener
{
public:
    /// `faults` are what is wrong with the markup that the first run wrote. Without `report` there is none.
    SecondRunListener(const RunCommand& command,
                      Console& console,
                      const Interrupt& interrupt,
                      const std::map<std::size_t, std::string>& faults,
                      RunReport* report)
        : m_command(command), m_console(console), m_interrupt(interrupt), m_faults(faults), m_report(report)
    {
    }

    report::Detail WantedDetail() const override { return report::Detail::Tickets; }

    void OnPage(const report::PageReport& sent) override
    {
        report::PageReport page = sent;
        const auto fault = m_faults.find(page.number);
        page.markupFault = fault == m_faults.end() ? std::string() : fault->second;
        const bool isStable = report::IsStable(page);
        m_stable += isStable ? 1 : 0;
        m_unstable += !isStable && report::IsJudged(page) ? 1 : 0;
        if (m_command.asJson)
        {
            m_console.PrintOut(report::FormatSecondRunJson(page));
        }
        else if (!isStable)
        {
            m_console.PrintOut("run again: " + report::FormatSecondRunLine(page));
        }
        if (m_report != nullptr)
        {
            m_report->AddSecondRun(page);
        }
    }

    bool IsCancelled() override { return m_interrupt.IsRaised(); }

    std::string Summarise() const
    {
        return xml::CountOf(m_stable, "page") + " stable; " + std::to_string(m_unstable) + " would change" +
               (m_faults.empty() ? "" : "; " + std::to_string(m_faults.size()) + " not judged");
    }

private:
    const RunCommand& m_command;
    Console& m_console;
    const Interrupt& m_interrupt;
    const std::map<std::size_t, std::string>& m_faults;
    RunReport* m_report;
    std::size_t m_stable = 0;
    std::size_t m_unstable = 0;
};

void PrintFailure(const std::filesystem::path& document, const std::string& failure, Console& console)
{
    console.PrintError(xml::ToOneLine("xpsfilterhost: " + opc::ToUtf8Path(document) + ": " + failure) + "\n");
}

/// Runs the filter over what it has written, without writing anything.
ExitStatus RunAgain(const RunCommand& command,
                    const std::string& userTicket,
                    SecondRunListener& listener,
                    Console& console,
                    const Interrupt& interrupt,
                    RunReport* report)
{
    job::Job second = command.job;
    second.document = *std::exchange(second.output, std::nullopt);
    if (report != nullptr)
    {
        report->NoteOutput();
    }
    const job::JobOutcome outcome = job::RunJob(second, userTicket, listener);
    interrupt.ThrowIfRaised();
    const std::string result = FAILED(outcome.result) ? DescribeFailure(outcome) : listener.Summarise();
    if (report != nullptr)
    {
        report->ShowSecondRun(result);
    }
    if (FAILED(outcome.result))
    {
        PrintFailure(second.document, result, console);
        return ExitStatus::FilterFailed;
    }
    if (!command.asJson)
    {
        console.PrintOut("run again: " + result + "\n");
    }
    return ExitStatus::Done;
}

ExitStatus RunAndReport(const RunCommand& command,
                        Console& console,
                        const Interrupt& interrupt,
                        RunListener& listener,
                        RunReport* report)
{
    const job::JobEnvironment environment(command.job);
    if (report != nullptr)
    {
        report->ShowUserTicket(environment.UserTicket());
    }
    const tickets::TicketOverrides& options = command.job.overrides;
    if (options.orientation || options.media || options.limits)
    {
        listener.WatchOptions(environment.UserTicket());
    }
    const job::JobOutcome outcome = job::RunJob(command.job, environment.UserTicket(), listener);
    listener.EndTable();
    if (FAILED(outcome.result))
    {
        interrupt.ThrowIfRaised();
        ThrowPackageFault(command.job.document, outcome);
        if (report != nullptr)
        {
            report->Fail(DescribeFailure(outcome), outcome.part);
        }
        PrintFailure(command.job.document, DescribeFailure(outcome), console);
        if (command.asJson)
        {
            console.PrintOut(listener.FormatOutcome("failed", outcome, DescribeFailure(outcome)));
        }
        return ExitStatus::FilterFailed;
    }
    if (!command.asJson)
    {
        console.PrintOut(listener.Summarise(outcome));
    }
    if (const std::string leaks = DescribeLeaks(outcome); !leaks.empty())
    {
        console.PrintError("xpsfilterhost: " + leaks + "\n");
    }
    ExitStatus status = ExitStatus::Done;
    if (command.runsAgain)
    {
        SecondRunListener second(command, console, interrupt, listener.MarkupFaults(), report);
        status = RunAgain(command, environment.UserTicket(), second, console, interrupt, report);
    }
    if (report != nullptr)
    {
        report->Finish(outcome);
    }
    if (command.asJson)
    {
        console.PrintOut(listener.FormatOutcome("done", outcome, ""));
    }
    return status;
}
} // namespace

ExitStatus Execute(const RunCommand& command, Console& console)
{
    const Interrupt interrupt;
    std::optional<RunReport> report;
    std::optional<RunListener> listener;
    ExitStatus status{};
    try
    {
        RequireFilesOfTheirOwn(command);
        if (command.report)
        {
            report.emplace(command);
        }
        RunReport* const pReport = report ? &*report : nullptr;
        listener.emplace(command, console, interrupt, pReport);
        status = RunAndReport(command, console, interrupt, *listener, pReport);
    }
    catch (const std::exception& failure)
    {
        if (report)
        {
            report->Fail(failure.what());
        }
        if (listener)
        {
            listener->EndTable();
        }
        if (listener && command.asJson)
        {
            const bool isStopped = interrupt.IsRaised();
            job::JobOutcome outcome;
            outcome.result = isStopped ? E_ABORT : S_OK;
            console.PrintOut(
                listener->FormatOutcome(isStopped ? "interrupted" : "unusable", outcome, failure.what()));
        }
        throw;
    }
    interrupt.ThrowIfRaised();
    return status;
}
} // namespace host::app
