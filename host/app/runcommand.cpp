#include "host/app/commands.h"

#include <map>
#include <string>
#include <system_error>
#include <utility>

#include "host/app/interrupt.h"
#include "host/app/runreport.h"
#include "host/app/stopwatch.h"
#include "host/job/filteranswer.h"
#include "host/job/filterjob.h"
#include "host/job/jobenvironment.h"
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
    // Files that are still to be made have their names only, whose case does not count.
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
/// Throws FileError when the run would write a file that it reads, or two files of one name.
void RequireFilesOfTheirOwn(const RunCommand& command)
{
    const std::pair<const char*, OptionalPath> read[] = {{"the input", command.input},
                                                         {"the user's ticket", command.setting.userTicket},
                                                         {"the device's description", command.setting.device},
                                                         {"the filter", job::ModuleOf(command.setting)}};
    for (const auto& [other, path] : read)
    {
        RequireAnother("the output", command.output, other, path);
        RequireAnother("the report", command.report, other, path);
    }
    RequireAnother("the report", command.report, "the output", command.output);
}

/// Shows a run to the user while it goes on.
class RunView
{
public:
    RunView(const RunCommand& command, Console& console) : m_command(command), m_console(console) {}

    void Connect(job::FilterJob& job, const Interrupt& interrupt)
    {
        job.onPage = [this](const report::PageReport& page) { ShowPage(page); };
        if (m_command.showsCalls)
        {
            job.onCall = [this](const pipeline::TracedCall& call) { ShowCall(call); };
        }
        job.isCancelled = [&interrupt] { return interrupt.IsRaised(); };
        job.onWriting = [this, &interrupt](double fraction) {
            interrupt.ThrowIfRaised();
            m_console.ShowProgress("writing, " + std::to_string(static_cast<int>(fraction * 100)) + " %");
        };
    }

    /// Of another run over the output only what it would change, or cannot be judged, is worth a line.
    void ConnectAgain(job::FilterJob& job)
    {
        job.onPage = [this](const report::PageReport& page) { ShowAgain(page); };
        job.onCall = {};
    }

    /// What was wrong with the markup that the first run wrote for a page; empty for nothing.
    std::string FaultOf(std::size_t page) const
    {
        const auto found = m_faults.find(page);
        return found == m_faults.end() ? std::string() : found->second;
    }

    std::string SummariseAgain() const
    {
        return xml::CountOf(m_stable, "page") + " stable; " + std::to_string(m_unstable) + " would change" +
               (m_faults.empty() ? "" : "; " + std::to_string(m_faults.size()) + " not judged");
    }

    void ShowOutcome(const job::FilterOutcome& outcome)
    {
        if (!m_command.asJson)
        {
            m_console.PrintOut(Summarise(outcome));
        }
        if (const std::string leftover = job::DescribeLeftover(outcome); !leftover.empty())
        {
            m_console.PrintError("xpsfilterhost: " + leftover + "\n");
        }
    }

private:
    void ShowPage(const report::PageReport& page)
    {
        m_decisions.Add(page);
        if (!page.markupFault.empty())
        {
            m_faults[page.number] = page.markupFault;
        }
        if (m_command.asJson)
        {
            m_console.PrintOut(report::FormatJson(page));
            return;
        }
        if (page.number == 1)
        {
            m_console.PrintOut(report::FormatTableHead());
        }
        m_console.PrintOut(report::FormatTableLine(page));
        m_console.ShowProgress("page " + std::to_string(page.number));
    }

    void ShowAgain(const report::PageReport& page)
    {
        const bool isStable = report::IsStable(page);
        m_stable += isStable ? 1 : 0;
        m_unstable += !isStable && report::IsJudged(page) ? 1 : 0;
        if (m_command.asJson)
        {
            m_console.PrintOut(report::FormatAgainJson(page));
        }
        else if (!isStable)
        {
            m_console.PrintOut("run again: " + report::FormatAgainLine(page));
        }
        m_console.ShowProgress("run again, page " + std::to_string(page.number));
    }

    void ShowCall(const pipeline::TracedCall& call)
    {
        m_console.PrintError(pipeline::FormatResult(call.result) + " " + std::string(call.method) +
                             (call.subject.empty() ? "" : " ") + call.subject + "\n");
    }

    std::string Summarise(const job::FilterOutcome& outcome) const
    {
        return xml::CountOf(outcome.pages, "page") + " in " + xml::CountOf(outcome.documents, "document") +
               ": " + m_decisions.Format() + "; " + m_watch.FormatElapsed() +
               (m_command.output ? ": " + opc::ToUtf8Path(*m_command.output) : ", nothing written") + "\n";
    }

    const RunCommand& m_command;
    Console& m_console;
    report::DecisionCounts m_decisions;
    std::size_t m_stable = 0;
    std::size_t m_unstable = 0;
    // Of the pages that were malformed and taken all the same.
    std::map<std::size_t, std::string> m_faults;
    Stopwatch m_watch;
};

void TellFailure(const std::filesystem::path& input, const std::string& failure, Console& console)
{
    console.PrintError(xml::ToOneLine("xpsfilterhost: " + opc::ToUtf8Path(input) + ": " + failure) + "\n");
}

/// Runs the filter over what it has written, without writing anything, as long as nobody stops it.
job::FilterOutcome RunAgain(job::FilterJob job, RunView& view, RunReport& report)
{
    job.input = *std::exchange(job.output, std::nullopt);
    job.detail = report::Detail::Tickets;
    view.ConnectAgain(job);
    report.ConnectAgain(job);
    job.onPage = [&view, others = std::move(job.onPage)](report::PageReport page) {
        page.markupFault = view.FaultOf(page.number);
        others(page);
    };
    return job::RunFilter(job);
}

ExitStatus RunAndReport(const RunCommand& command, Console& console, RunReport& report)
{
    const job::JobEnvironment ground(command.setting);
    report.ShowUserTicket(ground.UserTicket());
    const Interrupt interrupt;
    job::FilterJob job = ground.MakeJob(command.input, command.setting);
    job.output = command.output;
    RunView view(command, console);
    view.Connect(job, interrupt);
    const job::FilterJob plain = job;
    report.Connect(job);

    const job::FilterOutcome outcome = job::RunFilter(job);
    if (FAILED(outcome.result))
    {
        interrupt.ThrowIfRaised();
        job::ThrowPackageFault(command.input, outcome);
        report.Fail(job::DescribeFailure(outcome), outcome.part);
        TellFailure(command.input, job::DescribeFailure(outcome), console);
        return ExitStatus::FilterFailed;
    }
    view.ShowOutcome(outcome);
    ExitStatus status = ExitStatus::Done;
    if (command.runsAgain)
    {
        const job::FilterOutcome again = RunAgain(plain, view, report);
        interrupt.ThrowIfRaised();
        report.ShowAgain(FAILED(again.result) ? job::DescribeFailure(again) : view.SummariseAgain());
        if (FAILED(again.result))
        {
            TellFailure(*command.output, job::DescribeFailure(again), console);
            status = ExitStatus::FilterFailed;
        }
        else if (!command.asJson)
        {
            console.PrintOut("run again: " + view.SummariseAgain() + "\n");
        }
    }
    report.Finish(outcome);
    return status;
}
} // namespace

ExitStatus Execute(const RunCommand& command, Console& console)
{
    RequireFilesOfTheirOwn(command);
    RunReport report(command);
    try
    {
        return RunAndReport(command, console, report);
    }
    catch (const std::exception& failure)
    {
        report.Fail(failure.what());
        throw;
    }
}
} // namespace host::app
