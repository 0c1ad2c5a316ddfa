#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/app/commandline.h"
#include "host/app/stopwatch.h"
#include "host/job/filterjob.h"
#include "host/report/html/htmlreport.h"

namespace host::app
{
/// Makes the HTML report of a run, as far as one is wanted: all does nothing otherwise.
class RunReport
{
public:
    /// Throws opc::FileError for a file that cannot be written.
    explicit RunReport(const RunCommand& command);

    /// Says what the user's ticket selects. COM must be initialised on the thread.
    void ShowUserTicket(const std::string& ticket);

    /// Listens to the job beside whoever does already.
    void Connect(job::FilterJob& job);
    /// The same of another run over the job's output, which has been written.
    void ConnectAgain(job::FilterJob& job);

    /// What that other run came to.
    void ShowAgain(const std::string& text);

    /// Writes the report of a run that succeeded.
    void Finish(const job::FilterOutcome& outcome);

    /// Writes the report of one that did not: why, and where, or else at the part that the filter took last.
    /// What keeps it from being written is not told: the run has failed already.
    void Fail(const std::string& reason, const std::string& part = {}) noexcept;

private:
    void TakePage(const report::PageReport& page);
    void TakeCall(const pipeline::TracedCall& call);
    void Write(const std::string& outcome, const std::string& output);

    const RunCommand& m_command;
    std::optional<report::html::HtmlReport> m_report;
    Stopwatch m_watch;
    std::string m_userTicket = "could not be read";
    std::string m_again;
    bool m_isWritten = false;

    // Calls come from the filter's thread and, when the job is stopped, from the program's.
    std::mutex m_lock;
    // Sent, but its last call has not ended.
    std::optional<report::PageReport> m_page;
    report::html::CallList m_calls;
    std::string m_part;
    HRESULT m_result = S_OK;
};
} // namespace host::app
