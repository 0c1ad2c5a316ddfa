#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/job/joboptions.h"

namespace host::app
{
enum class ExitStatus
{
    Done = 0,
    /// Or was stopped by Ctrl-C.
    FilterFailed = 1,
    /// Of a comparison.
    Differs = 1,
    /// The document, another file or the command line.
    Unusable = 2
};

/// Run the filter over a document.
struct RunCommand
{
    std::filesystem::path input;
    /// Empty for a dry run.
    std::optional<std::filesystem::path> output;
    job::JobSetting setting;
    bool showsCalls = false;
    bool asJson = false;
    /// The HTML page that tells what became of each page.
    std::optional<std::filesystem::path> report;
    /// Whether the filter is run over its output once more, to see whether it would change that again.
    bool runsAgain = false;
};

/// Show the tickets of a document and where their values come from.
struct TicketsCommand
{
    std::filesystem::path input;
    job::JobSetting setting;
};

/// Run the filter over the documents of a table and hold what became of them against what it expects.
struct BatchCommand
{
    /// The table.
    std::filesystem::path input;
    /// For cases that name none.
    std::optional<std::filesystem::path> module;
};

/// Compare two documents part by part.
struct DiffCommand
{
    std::filesystem::path input;
    std::filesystem::path other;
    bool showsChangesOnly = false;
};

/// There is nothing to do but to say something: help, or what is wrong with the command line.
struct Notice
{
    ExitStatus status;
    std::string text;
};

using Command = std::variant<RunCommand, TicketsCommand, BatchCommand, DiffCommand, Notice>;

/// Takes the arguments in UTF-8, without the program's name.
Command ParseCommandLine(const std::vector<std::string>& arguments);
} // namespace host::app
