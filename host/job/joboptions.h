#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>

#include "host/job/job.h"

namespace CLI
{
class App;
class Option;
class ParseError;
} // namespace CLI

namespace host::job
{
/// An option that takes a text, or an argument.
struct TextOption
{
    const char* name;
    /// What stands for the value in the help.
    const char* valueName;
    /// Where it goes; must outlive the parsing.
    std::variant<std::filesystem::path*, std::optional<std::filesystem::path>*, std::optional<std::string>*>
        target;
    const char* description;
};

/// An empty text is refused: it usually comes from a shell variable that is not set.
CLI::Option* AddText(CLI::App& command, const TextOption& option);

/// Adds the options of a job to a command: all but --module and --accept-malformed, which some commands
/// lack.
void AddJobOptions(CLI::App& command, Job& job);
void AddModule(CLI::App& command, std::optional<std::filesystem::path>& module);
void AddAcceptMalformed(CLI::App& command, bool& acceptsMalformed);

/// What is wrong with a command line that could not be parsed; names the argument at fault, and the option
/// that was most likely meant. `command` is the one that the arguments are for, `root` the one that parsed
/// them.
std::string DescribeParseError(const CLI::App& root, const CLI::App& command, const CLI::ParseError& fault);

/// The job that options describe, as they are typed in UTF-8: "--media ISOA3 --tessel-type 1". Throws
/// std::runtime_error with what is wrong with them.
Job ParseJobOptions(const std::string& options);
} // namespace host::job
