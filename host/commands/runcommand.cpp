#include "host/commands/runcommand.h"

#include <chrono>
#include <iomanip>
#include <sstream>
#include <string>
#include <utility>

#include "host/commands/filteranswer.h"
#include "host/commands/jobground.h"
#include "host/commands/runreport.h"
#include "host/commands/writtenfiles.h"
#include "host/filterjob.h"
#include "host/interrupt.h"
#include "host/opc/ziparchive.h"
#include "host/report/again.h"
#include "host/report/pagetable.h"

namespace host
{
namespace
{
/// Shows a run to the user while it goes on.
class RunView
{
public:
    RunView(const RunCommand& command, Console& console) : m_command(command), m_console(console) {}

    void Connect(FilterJob& job, const Interrupt& interrupt)
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

    /// Of another run over the output only what it would change is worth a line.
    void ConnectAgain(FilterJob& job)
    {
        job.onPage = [this](const report::PageReport& page) { ShowAgain(page); };
        job.onCall = {};
    }

    std::string SummariseAgain() const
    {
        return CountOf(m_stable, "page") + " stable; " + std::to_string(m_unstable) + " would change";
    }

    void ShowOutcome(const FilterOutcome& outcome)
    {
        if (!m_command.asJson)
        {
            m_console.PrintOut(Summarise(outcome));
        }
        if (const std::string leftover = DescribeLeftover(outcome); !leftover.empty())
        {
            m_console.PrintError("xpsfilterhost: " + leftover + "\n");
        }
    }

private:
    void ShowPage(const report::PageReport& page)
    {
        ++m_decisions[static_cast<std::size_t>(report::Decide(page))];
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
        ++(isStable ? m_stable : m_unstable);
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
        std::ostringstream line;
        line << "0x" << std::hex << std::setw(8) << std::setfill('0')
             << static_cast<std::uint32_t>(call.result) << " " << call.method
             << (call.subject.empty() ? "" : " ") << call.subject << "\n";
        m_console.PrintError(line.str());
    }

    std::string Summarise(const FilterOutcome& outcome) const
    {
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - m_start;
        std::ostringstream text;
        text << CountOf(outcome.pages, "page") << " in " << CountOf(outcome.documents, "document") << ":";
        const char* separator = " ";
        for (std::size_t decision = 0; decision < std::size(m_decisions); ++decision)
        {
            text << separator << m_decisions[decision] << " "
                 << report::NameOf(static_cast<report::Decision>(decision));
            separator = "; ";
        }
        text << "; " << std::fixed << std::setprecision(2) << seconds.count() << " s";
        text << (m_command.output ? ": " + opc::ToUtf8Path(*m_command.output) : ", nothing written") << "\n";
        return text.str();
    }

    const RunCommand& m_command;
    Console& m_console;
    std::size_t m_decisions[4] = {};
    std::size_t m_stable = 0;
    std::size_t m_unstable = 0;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

void TellFailure(const std::filesystem::path& input, const std::string& failure, Console& console)
{
    console.PrintError(ToOneLine("xpsfilterhost: " + opc::ToUtf8Path(input) + ": " + failure) + "\n");
}

/// Runs the filter over what it has written, without writing anything, as long as nobody stops it.
FilterOutcome RunAgain(FilterJob job, RunView& view, RunReport& report)
{
    job.input = *std::exchange(job.output, std::nullopt);
    job.detail = report::Detail::Tickets;
    view.ConnectAgain(job);
    report.ConnectAgain(job);
    return RunFilter(job);
}

ExitStatus RunAndReport(const RunCommand& command, Console& console, RunReport& report)
{
    const JobGround ground(command.setting);
    report.ShowUserTicket(ground.UserTicket());
    const Interrupt interrupt;
    FilterJob job = ground.MakeJob(command.input, command.setting);
    job.output = command.output;
    RunView view(command, console);
    view.Connect(job, interrupt);
    const FilterJob plain = job;
    report.Connect(job);

    const FilterOutcome outcome = RunFilter(job);
    if (FAILED(outcome.result))
    {
        interrupt.ThrowIfRaised();
        ThrowPackageFault(command.input, outcome);
        report.Fail(DescribeFailure(outcome), outcome.part);
        TellFailure(command.input, DescribeFailure(outcome), console);
        return ExitStatus::FilterFailed;
    }
    view.ShowOutcome(outcome);
    ExitStatus status = ExitStatus::Done;
    if (command.runsAgain)
    {
        const FilterOutcome again = RunAgain(plain, view, report);
        interrupt.ThrowIfRaised();
        report.ShowAgain(FAILED(again.result) ? DescribeFailure(again) : view.SummariseAgain());
        if (FAILED(again.result))
        {
            TellFailure(*command.output, DescribeFailure(again), console);
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

ExitStatus Carry(const RunCommand& command, Console& console)
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
} // namespace host
