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

struct JobProgress
{
    JobStage stage;
    JobCount done;
    /// Of the output, from 0 to 1.
    double written;
};

/// Told after every page and then while the output is written. What it throws stops the job, which leaves the
/// output as it was.
using JobListener = std::function<void(const JobProgress& progress)>;

/// Copies the XPS document `input` to `output` with every fixed page rewritten, in document order. Throws
/// opc::PackageError when the document cannot be read or a page cannot be rewritten; the output is then as
/// it was. COM must be initialised on the thread.
JobCount RewritePages(const std::filesystem::path& input,
                      const std::filesystem::path& output,
                      const PageRewriter& rewrite,
                      const JobListener& listener);
} // namespace host
