#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>

#include "host/pagerewriter.h"

namespace host
{
/// How far a job has come.
struct JobCount
{
    std::size_t documents = 0;
    std::size_t pages = 0;

    friend bool operator==(const JobCount&, const JobCount&) = default;
};

enum class JobStage
{
    Rewriting,
    Writing
};

/// Told after every page and once more before the output is written.
using JobListener = std::function<void(JobStage stage, const JobCount& done)>;

/// Copies the XPS document `input` to `output` with every fixed page rewritten, in document order. Throws
/// opc::PackageError when the document cannot be read or a page cannot be rewritten; the output is then as
/// it was before. COM must be initialised on the thread.
JobCount RewritePages(const std::filesystem::path& input,
                      const std::filesystem::path& output,
                      const PageRewriter& rewrite,
                      const JobListener& listener);
} // namespace host
