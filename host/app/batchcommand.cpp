#include "host/app/commandline.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "host/app/console.h"
#include "host/app/interrupt.h"
#include "host/app/stopwatch.h"
#include "host/job/casetable.h"
#include "host/job/jobenvironment.h"
#include "host/job/joboutcome.h"
#include "host/job/runjob.h"
#include "host/opc/files.h"
#include "host/opc/temporaryfile.h"
#include "host/pipeline/filtermodule.h"
#include "host/pipeline/resulttext.h"
#include "host/report/pagewords.h"
#include "host/xml/encoding.h"
#include "host/xml/text.h"
#include "host/xml/writer.h"

namespace host::app
{
namespace
{
/// Throws opc::FileError for a table that is no text, which would have a fault in each of its lines.
std::string ReadTable(const std::filesystem::path& file)
{
    const std::string bytes = opc::ReadFileBytes(file);
    if (!xml::IsUtf8(bytes) || bytes.find('\0') != bytes.npos)
    {
        throw opc::FileError(file, "is not a text in UTF-8");
    }
    return bytes;
}

void WriteFile(const std::filesystem::path& path, const std::string& bytes)
{
    opc::ReplacedFile file(path);
    file.Write(bytes);
    file.Commit();
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
            m_result.outcome.pages.push_back(report::Decide(page));
            m_result.reasons.push_back(report::ExplainWithNotes(page));
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
            if (outcome.documentFault)
            {
                throw *outcome.documentFault;
            }
            result.outcome.end = "failed " + pipeline::FormatResult(outcome.result);
            result.endReason = DescribeFailure(outcome);
        }
    }
    catch (const opc::PackageError& fault)
    {
        result.outcome.end = "unusable";
        result.endReason = fault.Reason();
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

    /// Reports a case whose module, files or options cannot be used, without running it.
    void CheckSetUp(const job::Case& row)
    {
        try
        {
            const job::JobEnvironment environment(row.job);
            const pipeline::FilterModule module(job::FilterModuleOf(row.job));
        }
        catch (const std::exception& fault)
        {
            ReportFault(row.line, fault.what());
        }
    }

    void Run(const job::Case& row, const Interrupt& interrupt)
    {
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
            AddToJunit(row, "error", fault.what());
        }
    }

    /// Throws opc::FileError.
    void WriteFiles(const std::string& table)
    {
        if (m_command.junit)
        {
            WriteFile(*m_command.junit, FormatJunit());
        }
        if (m_command.record)
        {
            WriteFile(*m_command.record, job::RecordOutcomes(table, m_outcomes));
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
        return m_different > 0 && !m_command.record ? ExitStatus::Differs : ExitStatus::Done;
    }

private:
    void Report(const job::Case& row, const job::CaseResult& result)
    {
        const auto differences = job::FindDifferences(row.expected, result);
        ++(differences.empty() ? m_expected : m_different);
        std::ostringstream text;
        text << (differences.empty() ? "ok      " : "differs ") << std::setw(4) << row.line << "  "
             << xml::ToOneLine(row.title + ": " + job::FormatOutcome(result.outcome)) << "\n";
        std::string all;
        for (const std::string& difference : differences)
        {
            const std::string line = xml::ToOneLine(difference);
            text << "              " << line << "\n";
            all += (all.empty() ? "" : "; ") + line;
        }
        m_console.PrintOut(text.str());
        m_outcomes[row.line] = result.outcome;
        AddToJunit(row, "failure", all);
    }

    /// A case of the results for a test server, with what went wrong; empty for nothing.
    void AddToJunit(const job::Case& row, const char* kind, const std::string& message)
    {
        m_junit.push_back({std::to_string(row.line) + ": " + row.title, kind, message});
    }

    std::string FormatJunit() const
    {
        xml::Writer writer;
        writer.Start("testsuite");
        writer.Attribute("name", opc::ToUtf8Path(m_command.input));
        writer.Attribute("tests", std::to_string(m_junit.size()));
        writer.Attribute("failures", std::to_string(m_different));
        writer.Attribute("errors", std::to_string(m_faults));
        for (const auto& [name, kind, message] : m_junit)
        {
            writer.Start("testcase");
            writer.Attribute("classname", opc::ToUtf8Path(m_command.input.filename()));
            writer.Attribute("name", name);
            if (!message.empty())
            {
                writer.Start(kind);
                writer.Attribute("message", message);
                writer.End();
            }
            writer.End();
        }
        writer.End();
        return writer.Take();
    }

    const BatchCommand& m_command;
    Console& m_console;
    std::vector<std::array<std::string, 3>> m_junit;
    std::map<std::size_t, job::ExpectedOutcome> m_outcomes;
    std::size_t m_expected = 0;
    std::size_t m_different = 0;
    std::size_t m_faults = 0;
    Stopwatch m_watch;
};
} // namespace

ExitStatus Execute(const BatchCommand& command, Console& console)
{
    const Interrupt interrupt;
    const std::string text = ReadTable(command.input);
    job::CaseTable table = job::ReadCaseTable(text, command.input.parent_path());
    for (job::Case& row : table.cases)
    {
        row.job.module = row.job.module ? row.job.module : command.module;
    }
    BatchRun run(command, console);
    for (const job::LineFault& fault : table.faults)
    {
        run.ReportFault(fault.line, fault.reason);
    }
    if (!table.faults.empty())
    {
        std::for_each(
            table.cases.begin(), table.cases.end(), [&](const job::Case& row) { run.CheckSetUp(row); });
        return ExitStatus::Unusable;
    }
    if (table.cases.empty())
    {
        throw opc::FileError(command.input, "has no case");
    }
    std::size_t number = 0;
    for (const job::Case& row : table.cases)
    {
        console.ShowProgress("case " + std::to_string(++number) + " of " +
                             std::to_string(table.cases.size()) + ": " + row.title);
        run.Run(row, interrupt);
        interrupt.ThrowIfRaised();
    }
    run.WriteFiles(text);
    return run.Summarise();
}
} // namespace host::app
