#include "host/commands/batchcommand.h"

#include <exception>
#include <iomanip>
#include <sstream>
#include <string>

#include "host/batch/casetable.h"
#include "host/batch/jobcourse.h"
#include "host/commands/filteranswer.h"
#include "host/commands/jobground.h"
#include "host/filebytes.h"
#include "host/fileerror.h"
#include "host/filterjob.h"
#include "host/interrupt.h"
#include "host/opc/packageerror.h"
#include "host/paths.h"
#include "host/stopwatch.h"
#include "host/text.h"

namespace host
{
namespace
{
bool IsUtf8(std::string_view bytes)
{
    return bytes.empty() ||
           MultiByteToWideChar(
               CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0) > 0;
}

/// Throws FileError for a table that is no text, which would have a fault in each of its lines.
batch::CaseTable ReadTable(const std::filesystem::path& file)
{
    const std::string bytes = ReadFileBytes(file);
    if (!IsUtf8(bytes) || bytes.find('\0') != bytes.npos)
    {
        throw FileError(file, "is not a text in UTF-8");
    }
    return batch::ReadCaseTable(bytes, file.parent_path());
}

/// Throws what JobGround and RunFilter throw for anything but the document.
batch::JobResult RunCase(const batch::Case& row, const Interrupt& interrupt)
{
    const JobGround ground(row.setting);
    batch::JobResult result;
    FilterJob job = ground.MakeJob(row.document, row.setting);
    job.onPage = [&](const report::PageReport& page) {
        if (!page.isRefused)
        {
            result.pages.push_back(page);
        }
    };
    job.isCancelled = [&] { return interrupt.IsRaised(); };
    try
    {
        const FilterOutcome outcome = RunFilter(job);
        result.leftover = DescribeLeftover(outcome);
        if (FAILED(outcome.result))
        {
            interrupt.ThrowIfRaised();
            ThrowPackageFault(row.document, outcome);
            result.end = batch::JobEnd::FilterFailed;
            result.result = outcome.result;
            result.reason = DescribeFailure(outcome);
        }
    }
    catch (const opc::PackageError& fault)
    {
        result.end = batch::JobEnd::Unusable;
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
        m_console.PrintError(ToOneLine("xpsfilterhost: " + ToUtf8Path(m_command.input) + ":" +
                                       std::to_string(line) + ": " + reason) +
                             "\n");
    }

    void Run(batch::Case row, const Interrupt& interrupt)
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
        text << CountOf(m_alike + m_different + m_faults, "case") << ": " << m_alike << " as expected; "
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
    void Tell(const batch::Case& row, const batch::JobResult& result)
    {
        const auto differences = batch::FindDifferences(row.expected, result);
        ++(differences.empty() ? m_alike : m_different);
        std::ostringstream text;
        text << (differences.empty() ? "ok      " : "differs ") << std::setw(4) << row.line << "  "
             << ToOneLine(row.title + ": " + batch::FormatCourse(result.ToCourse())) << "\n";
        for (const std::string& difference : differences)
        {
            text << "              " << ToOneLine(difference) << "\n";
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

ExitStatus Carry(const BatchCommand& command, Console& console)
{
    const batch::CaseTable table = ReadTable(command.input);
    BatchRun run(command, console);
    for (const batch::LineFault& fault : table.faults)
    {
        run.TellFault(fault.line, fault.reason);
    }
    if (!table.faults.empty())
    {
        return ExitStatus::Unusable;
    }
    if (table.cases.empty())
    {
        throw FileError(command.input, "has no case");
    }
    const Interrupt interrupt;
    for (const batch::Case& row : table.cases)
    {
        run.Run(row, interrupt);
    }
    return run.Sum();
}
} // namespace host
