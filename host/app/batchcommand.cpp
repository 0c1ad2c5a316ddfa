#include "host/app/commands.h"

#include <exception>
#include <iomanip>
#include <sstream>
#include <string>

#include "host/app/interrupt.h"
#include "host/app/stopwatch.h"
#include "host/job/casetable.h"
#include "host/job/expectedoutcome.h"
#include "host/job/jobenvironment.h"
#include "host/job/joboutcome.h"
#include "host/job/runjob.h"
#include "host/opc/files.h"
#include "host/opc/packageerror.h"
#include "host/xml/encoding.h"
#include "host/xml/text.h"

namespace host::app
{
namespace
{
/// Throws opc::FileError for a table that is no text, which would have a fault in each of its lines.
job::CaseTable ReadTable(const std::filesystem::path& file)
{
    const std::string bytes = opc::ReadFileBytes(file);
    if (!xml::IsUtf8(bytes) || bytes.find('\0') != bytes.npos)
    {
        throw opc::FileError(file, "is not a text in UTF-8");
    }
    return job::ReadCaseTable(bytes, file.parent_path());
}

/// Collects the pages of a case.
class CaseListener final : public job::JobListener
{
public:
    CaseListener(job::CaseResult& result, const Interrupt& interrupt)
        : m_result(result), m_interrupt(interrupt)
    {
    }

    void OnPage(const report::PageReport& page) override
    {
        if (!page.isRefused)
        {
            m_result.pages.push_back(page);
        }
    }

    bool IsCancelled() override { return m_interrupt.IsRaised(); }

private:
    job::CaseResult& m_result;
    const Interrupt& m_interrupt;
};

/// Throws what JobEnvironment and RunJob throw, except for the document.
job::CaseResult RunCase(const job::Case& row, const Interrupt& interrupt)
{
    const job::JobEnvironment environment(row.job);
    job::CaseResult result;
    CaseListener listener(result, interrupt);
    try
    {
        const job::JobOutcome outcome = job::RunJob(row.job, environment.UserTicket(), listener);
        result.leaks = DescribeLeaks(outcome);
        if (FAILED(outcome.result))
        {
            interrupt.ThrowIfRaised();
            ThrowPackageFault(row.job.document, outcome);
            result.end = job::JobEnd::FilterFailed;
            result.result = outcome.result;
            result.reason = DescribeFailure(outcome);
        }
    }
    catch (const opc::PackageError& fault)
    {
        result.end = job::JobEnd::Unusable;
        result.reason = fault.Reason();
    }
    return result;
}

/// Runs cases and counts their results.
class BatchRun
{
public:
    BatchRun(const BatchCommand& command, Console& console) : m_command(command), m_console(console) {}

    void ReportFault(std::size_t line, const std::string& reason)
    {
        ++m_faults;
        m_console.PrintError(xml::ToOneLine("xpsfilterhost: " + opc::ToUtf8Path(m_command.input) + ":" +
                                            std::to_string(line) + ": " + reason) +
                             "\n");
    }

    void Run(job::Case row, const Interrupt& interrupt)
    {
        if (!row.job.module)
        {
            row.job.module = m_command.module;
        }
        m_console.ShowProgress(row.title);
        try
        {
            Report(row, RunCase(row, interrupt));
        }
        catch (const InterruptedError&)
        {
            throw;
        }
        catch (const std::exception& fault)
        {
            ReportFault(row.line, fault.what());
        }
    }

    ExitStatus Summarise() const
    {
        std::ostringstream text;
        text << xml::CountOf(m_expected + m_different + m_faults, "case") << ": " << m_expected
             << " as expected; " << m_different << " not";
        if (m_faults > 0)
        {
            text << "; " << m_faults << " could not be run";
        }
        text << "; " << m_watch.FormatElapsed() << "\n";
        m_console.PrintOut(text.str());
        if (m_faults > 0)
        {
            return ExitStatus::Unusable;
        }
        return m_different > 0 ? ExitStatus::Differs : ExitStatus::Done;
    }

private:
    void Report(const job::Case& row, const job::CaseResult& result)
    {
        const auto differences = job::FindDifferences(row.expected, result);
        ++(differences.empty() ? m_expected : m_different);
        std::ostringstream text;
        text << (differences.empty() ? "ok      " : "differs ") << std::setw(4) << row.line << "  "
             << xml::ToOneLine(row.title + ": " + job::FormatOutcome(result.ToOutcome())) << "\n";
        for (const std::string& difference : differences)
        {
            text << "              " << xml::ToOneLine(difference) << "\n";
        }
        m_console.PrintOut(text.str());
    }

    const BatchCommand& m_command;
    Console& m_console;
    std::size_t m_expected = 0;
    std::size_t m_different = 0;
    std::size_t m_faults = 0;
    Stopwatch m_watch;
};
} // namespace

ExitStatus Execute(const BatchCommand& command, Console& console)
{
    const Interrupt interrupt;
    const job::CaseTable table = ReadTable(command.input);
    BatchRun run(command, console);
    for (const job::LineFault& fault : table.faults)
    {
        run.ReportFault(fault.line, fault.reason);
    }
    if (!table.faults.empty())
    {
        return ExitStatus::Unusable;
    }
    if (table.cases.empty())
    {
        throw opc::FileError(command.input, "has no case");
    }
    for (const job::Case& row : table.cases)
    {
        run.Run(row, interrupt);
        interrupt.ThrowIfRaised();
    }
    return run.Summarise();
}
} // namespace host::app
