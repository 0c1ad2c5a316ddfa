// Runs the host's program once for each line of its input, so that ten thousand runs start one process. A
// line is a list of arguments between tabs; the first two name the files that take the run's output and its
// messages. The answer to each line is the exit status.
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <iostream>
#include <share.h>
#include <sstream>
#include <sys/stat.h>

// The program's own main function, under another name.
#define wmain RunHost
#include "host/app/main.cpp" // NOLINT(bugprone-suspicious-include): its main function is a part of no library.
#undef wmain

namespace
{
std::vector<std::wstring> Split(const std::string& line)
{
    std::vector<std::wstring> arguments;
    std::istringstream rest(line);
    for (std::string argument; std::getline(rest, argument, '\t');)
    {
        arguments.push_back(base::utility::FromUtf8(argument));
    }
    return arguments;
}

void Redirect(std::FILE* stream, const std::wstring& path)
{
    int file = -1;
    if (_wsopen_s(&file, path.c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY, _SH_DENYNO, _S_IWRITE) !=
            0 ||
        _dup2(file, _fileno(stream)) != 0)
    {
        std::abort();
    }
    _close(file);
}
} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the runtime library gives the name.
int wmain()
{
    const int answers = _dup(_fileno(stdout));
    for (std::string line; std::getline(std::cin, line);)
    {
        std::vector<std::wstring> texts = Split(line);
        Redirect(stdout, texts.at(0));
        Redirect(stderr, texts.at(1));
        texts.erase(texts.begin(), texts.begin() + 1);
        std::vector<wchar_t*> arguments;
        for (std::wstring& text : texts)
        {
            arguments.push_back(text.data());
        }
        const std::string status =
            std::to_string(RunHost(static_cast<int>(arguments.size()), arguments.data())) + "\n";
        _write(answers, status.data(), static_cast<unsigned>(status.size()));
    }
    return 0;
}
