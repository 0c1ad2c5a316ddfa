#pragma once

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/app/commandline.h"
#include "host/app/stopwatch.h"
#include "host/job/runjob.h"
#include "host/report/html/htmlreport.h"

namespace host::app
{
/// Collects the HTML report of a run and writes it at the end, or when the run has failed.
class RunReport
{
public:
    /// The command asks for a report. Throws opc::FileError for a file that cannot be written.
    explicit RunReport(const RunCommand& command);

    /// COM must be initialised on the thread.
    void ShowUserTicket(const std::string& ticket);

    /// The filter has sent a page; the page is added with its calls once its last call has ended.
    void TakePage(const report::PageReport& page);
    void TakeCall(const pipeline::TracedCall& call);

    /// How many pages the document has; 0 if nobody knows.
    void NoteAllPages(std::size_t pages) noexcept { m_allPages = pages; }

    /// The output has been written; from now on the report names it even if the run fails.
    void NoteOutput() noexcept { m_isWritten = true; }
    /// The same page in the second run.
    void AddSecondRun(const report::PageReport& page) { m_report.AddSecondRun(page); }
    void ShowSecondRun(const std::string& summary);

    /// Writes the report of a run that succeeded.
    void Finish(const job::JobOutcome& outcome);

    /// Writes the report of a run that failed: why, and at which part; without one, at the part that the
    /// filter took last. A failure to write it is ignored, since the run has failed already.
    void Fail(const std::string& reason, const std::string& part = {}) noexcept;

private:
    void Write(const std::string& outcome, const std::string& output);

    const RunCommand& m_command;
    report::html::HtmlReport m_report;
    Stopwatch m_watch;
    std::string m_userTicket = "could not be read";
    std::string m_secondRun;
    bool m_isWritten = false;
    std::size_t m_allPages = 0;

    // Calls come from the filter's thread and, while a job is stopped, from the main thread.
    std::mutex m_lock;
    // The page whose last call has not ended.
    std::optional<report::PageReport> m_page;
    report::html::CallList m_calls;
    std::string m_part;
    HRESULT m_result = S_OK;
};
} // namespace host::app
