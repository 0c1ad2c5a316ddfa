#pragma once

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace host
{
enum class ExitStatus
{
    Success = 0,
    WrongUsage = 1,
    JobFailed = 2
};

/// Turn every page of a document.
struct TurnCommand
{
    std::filesystem::path input;
    std::filesystem::path output;
};

/// There is nothing to do but to say something: help, or what is wrong with the command line.
struct Notice
{
    ExitStatus status;
    std::string text;
};

/// Takes the arguments in UTF-8, without the program's name.
std::variant<TurnCommand, Notice> ParseCommandLine(const std::vector<std::string>& arguments);
} // namespace host
