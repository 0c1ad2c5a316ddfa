#include "host/app/commands.h"

#include <exception>
#include <iomanip>
#include <sstream>
#include <string>

#include "host/app/interrupt.h"
#include "host/app/stopwatch.h"
#include "host/job/casetable.h"
#include "host/job/expectedoutcome.h"
#include "host/job/filteranswer.h"
#include "host/job/filterjob.h"
#include "host/job/jobenvironment.h"
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

/// Throws what job::JobEnvironment and job::RunFilter throw for anything but the document.
job::JobResult RunCase(const job::Case& row, const Interrupt& interrupt)
{
    const job::JobEnvironment ground(row.setting);
    job::JobResult result;
    job::FilterJob job = ground.MakeJob(row.document, row.setting);
    job.onPage = [&](const report::PageReport& page) {
        if (!page.isRefused)
        {
            result.pages.push_back(page);
        }
    };
    job.isCancelled = [&] { return interrupt.IsRaised(); };
    try
    {
        const job::FilterOutcome outcome = job::RunFilter(job);
        result.leftover = job::DescribeLeftover(outcome);
        if (FAILED(outcome.result))
        {
            interrupt.ThrowIfRaised();
            job::ThrowPackageFault(row.document, outcome);
            result.end = job::JobEnd::FilterFailed;
            result.result = outcome.result;
            result.reason = job::DescribeFailure(outcome);
        }
    }
    catch (const opc::PackageError& fault)
    {
        result.end = job::JobEnd::Unusable;
        result.reason = fault.Reason();
    }
    return result;
}

/// Goes through the cases and counts what they came to.
class BatchRun
{
public:
    BatchRun(const BatchCommand& command, Console& console) : m_command(command), m_console(console) {}

    void TellFault(std::size_t line, const std::string& reason)
    {
        ++m_faults;
        m_console.PrintError(xml::ToOneLine("xpsfilterhost: " + opc::ToUtf8Path(m_command.input) + ":" +
                                            std::to_string(line) + ": " + reason) +
                             "\n");
    }

    void Run(job::Case row, const Interrupt& interrupt)
    {
        if (!row.setting.module)
        {
            row.setting.module = m_command.module;
        }
        m_console.ShowProgress(row.title);
        try
        {
            Tell(row, RunCase(row, interrupt));
        }
        catch (const InterruptedError&)
        {
            throw;
        }
        catch (const std::exception& fault)
        {
            TellFault(row.line, fault.what());
        }
    }

    ExitStatus Sum() const
    {
        std::ostringstream text;
        text << xml::CountOf(m_alike + m_different + m_faults, "case") << ": " << m_alike << " as expected; "
             << m_different << " not";
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
    void Tell(const job::Case& row, const job::JobResult& result)
    {
        const auto differences = job::FindDifferences(row.expected, result);
        ++(differences.empty() ? m_alike : m_different);
        std::ostringstream text;
        text << (differences.empty() ? "ok      " : "differs ") << std::setw(4) << row.line << "  "
             << xml::ToOneLine(row.title + ": " + job::FormatCourse(result.ToCourse())) << "\n";
        for (const std::string& difference : differences)
        {
            text << "              " << xml::ToOneLine(difference) << "\n";
        }
        m_console.PrintOut(text.str());
    }

    const BatchCommand& m_command;
    Console& m_console;
    std::size_t m_alike = 0;
    std::size_t m_different = 0;
    std::size_t m_faults = 0;
    Stopwatch m_watch;
};
} // namespace

ExitStatus Execute(const BatchCommand& command, Console& console)
{
    const job::CaseTable table = ReadTable(command.input);
    BatchRun run(command, console);
    for (const job::LineFault& fault : table.faults)
    {
        run.TellFault(fault.line, fault.reason);
    }
    if (!table.faults.empty())
    {
        return ExitStatus::Unusable;
    }
    if (table.cases.empty())
    {
        throw opc::FileError(command.input, "has no case");
    }
    const Interrupt interrupt;
    for (const job::Case& row : table.cases)
    {
        run.Run(row, interrupt);
    }
    return run.Sum();
}
} // namespace host::app
