#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/opc/spillfile.h"
#include "host/report/decisioncounts.h"
#include "host/report/html/pageblock.h"

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
/// appears under its name with Finish. To be used by one thread at a time.
class HtmlReport
{
public:
    /// Throws opc::FileError when there can be no file of this name, as all below do when the disk is full.
    explicit HtmlReport(std::filesystem::path target);

    /// Adds a page with details. To be called in the order of the job.
    void AddPage(const PageReport& page, const CallList& calls);

    /// Adds what the second run did to that page.
    void AddSecondRun(const PageReport& page);

    void AddFailure(const Failure& failure, const CallList& calls);

    const DecisionCounts& Decisions() const noexcept { return m_decisions; }
    bool HasFailed() const noexcept { return m_hasFailed; }

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
};
} // namespace host::report::html
