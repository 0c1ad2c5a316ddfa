#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/job/job.h"

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace host::job
{
/// Adds an option that takes a text, or an argument. An empty text is refused: it usually comes from a shell
/// variable that is not set. `value` must outlive the parsing.
CLI::Option* AddText(CLI::App& command,
                     const char* name,
                     std::optional<std::string>& value,
                     const char* description);
CLI::Option* AddText(CLI::App& command,
                     const char* name,
                     std::filesystem::path& value,
                     const char* description);
CLI::Option* AddText(CLI::App& command,
                     const char* name,
                     std::optional<std::filesystem::path>& value,
                     const char* description);

/// Adds the options of a job to a command: all but --module and --accept-malformed, which some commands
/// lack.
void AddJobOptions(CLI::App& command, Job& job);
void AddModule(CLI::App& command, std::optional<std::filesystem::path>& module);
void AddAcceptMalformed(CLI::App& command, bool& acceptsMalformed);

/// The job that options describe, as they are typed in UTF-8: "--media ISOA3 --tessel-type 1". Throws
/// std::runtime_error with what is wrong with them.
Job ParseJobOptions(const std::string& options);
} // namespace host::job
