#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/opc/temporaryfile.h"
#include "host/report/html/pageblock.h"
#include "host/report/pagewords.h"

namespace host::report::html
{
/// A row of the report's first table; `html` is escaped already.
struct SummaryRow
{
    std::string title;
    std::string html;
};

/// One HTML file that shows what the filter did to each page of a job. It needs no other file and no network;
/// its script only hides pages. It is collected in a temporary file, so that a long job takes no memory, and
/// appears under its name with Finish.
class HtmlReport
{
public:
    /// Throws opc::FileError when there can be no file of this name, as all below do when the disk is full.
    explicit HtmlReport(std::filesystem::path target);

    /// The filter has sent a page with details, which is added with its calls once its last call has ended.
    /// Calls come from the filter's thread and, while a job is stopped, from the main thread.
    void TakePage(const PageReport& page);
    void TakeCall(const pipeline::TracedCall& call);

    /// Adds what the second run did to that page.
    void AddSecondRun(const PageReport& page);

    /// Adds why the job failed, and at which part; if that is empty, at the one that the filter took last.
    void AddFailure(const std::string& part, const std::string& reason);

    const DecisionCounts& Decisions() const noexcept { return m_decisions; }
    /// The filter's own failure; S_OK for none.
    HRESULT FilterResult() const noexcept { return m_result; }

    /// To be called once.
    void Finish(const std::string& title, const std::vector<SummaryRow>& summary);

private:
    /// A piece of the temporary file.
    struct Piece
    {
        std::uint64_t offset = 0;
        std::size_t size = 0;
    };

    struct Block
    {
        Piece head;
        Piece rest;
        Piece again;
        Decision decision{};
    };

    Piece Keep(std::string_view html);
    std::string Load(const Piece& piece);
    std::string FormatOverview() const;
    std::string FormatFilter() const;

    std::filesystem::path m_target;
    opc::SpillFile m_pieces;
    std::vector<Block> m_blocks;
    DecisionCounts m_decisions;
    bool m_hasFailed = false;
    bool m_hasSecondRun = false;

    std::mutex m_lock;
    // The page whose last call has not ended.
    std::optional<PageReport> m_page;
    CallList m_calls;
    std::string m_part;
    HRESULT m_result = S_OK;
};
} // namespace host::report::html
