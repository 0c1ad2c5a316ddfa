#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "host/tickets/userticket.h"

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace host::job
{
/// The printer, the driver and the user that a job is run for.
struct JobSetting
{
    std::optional<std::filesystem::path> userTicket;
    std::optional<std::filesystem::path> device;
    /// A printer of the spooler, which takes the platform's own print ticket provider.
    std::optional<std::string> printer;
    std::optional<std::int32_t> tesselType;
    std::optional<std::string> privatePrefix;
    tickets::TicketOverrides overrides;
    /// Whether new markup of a page is taken that is malformed.
    bool acceptsMalformed = false;
    /// The filter's DLL, in place of the one beside this program.
    std::optional<std::filesystem::path> module;
};

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

/// Adds the options of a setting to a command: all but --module and --accept-malformed, which some commands
/// lack.
void AddSetting(CLI::App& command, JobSetting& setting);
void AddModule(CLI::App& command, std::optional<std::filesystem::path>& module);
void AddAcceptMalformed(CLI::App& command, bool& acceptsMalformed);

/// The setting that options give as they are typed, in UTF-8: "--media ISOA3 --tessel-type 1". Throws
/// std::runtime_error with what is wrong with them.
JobSetting ParseSetting(const std::string& options);
} // namespace host::job
