#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/job/job.h"

namespace host::app
{
class Console;

enum class ExitStatus
{
    Done = 0,
    FilterFailed = 1,
    /// The result of diff and batch.
    Differs = 1,
    /// The document, another file or the command line cannot be used.
    Unusable = 2,
    /// After Ctrl-C, as shells have it.
    Interrupted = 130
};

/// Pages by their numbers, as "1-3,7".
class PageSelection
{
public:
    /// Throws std::runtime_error for what is none.
    static PageSelection Parse(std::string_view text);

    bool Contains(std::size_t page) const;

private:
    // First and last; none for all pages.
    std::vector<std::pair<std::size_t, std::size_t>> m_ranges;
};

/// Run the filter over a document.
struct RunCommand
{
    job::Job job;
    bool showsCalls = false;
    bool asJson = false;
    bool showsDetails = false;
    /// The pages to print: all of them, or these, and only those that the filter changed.
    PageSelection pages;
    bool showsChangesOnly = false;
    /// The HTML report to write.
    std::optional<std::filesystem::path> report;
    /// Whether to run the filter over its output again, to see whether it would change that.
    bool runsAgain = false;
};

/// Show the tickets of a document and where their values come from.
struct TicketsCommand
{
    job::Job job;
    bool asJson = false;
};

/// Run a table of cases and compare the outcomes with the expected ones. A row that cannot be used is
/// reported on stderr.
struct BatchCommand
{
    /// The table.
    std::filesystem::path input;
    /// The module of the cases that name none.
    std::optional<std::filesystem::path> module;
    /// The table to write, with what happened in place of what was expected.
    std::optional<std::filesystem::path> record;
    /// The results to write for a test server, in JUnit's format.
    std::optional<std::filesystem::path> junit;
};

/// Compare two documents part by part.
struct DiffCommand
{
    std::filesystem::path input;
    std::filesystem::path other;
    bool showsChangesOnly = false;
};

/// Nothing to run, but a text to print: help, or what is wrong with the command line.
struct Notice
{
    ExitStatus status;
    std::string text;
};

using Command = std::variant<RunCommand, TicketsCommand, BatchCommand, DiffCommand, Notice>;

/// Takes the arguments in UTF-8, without the program's name.
Command ParseCommandLine(const std::vector<std::string>& arguments);

// One function for each command of the program. All throw opc::PackageError for a document and
// std::runtime_error for any other file or argument that cannot be used; those that run the filter throw
// InterruptedError after Ctrl-C.
ExitStatus Execute(const RunCommand& command, Console& console);
ExitStatus Execute(const TicketsCommand& command, Console& console);
ExitStatus Execute(const BatchCommand& command, Console& console);
ExitStatus Execute(const DiffCommand& command, Console& console);
} // namespace host::app
