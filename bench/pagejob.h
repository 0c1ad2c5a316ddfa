#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "platform/filterpipeline.h"

namespace bench
{
/// What becomes of each page of a job. Pages have tickets of their own, but for those that inherit theirs.
enum class PageKind
{
    Inherited,
    Passed,
    Turned,
    Refitted
};

/// Throws std::invalid_argument for what is no kind.
PageKind KindOf(const std::string& name);

struct PageJob
{
    PageKind kind;
    std::size_t pages;
    std::string markup;
    /// In the place of the kind's own; empty for that.
    std::string ticket = {};
};

/// A page with nothing on it but a line.
extern const std::string kSmallPage;

/// Runs a filter over a job of one document, whose pages come into being when the filter asks for them and go
/// once it has sent them. Throws when the filter fails, or when what became of the pages is not what their
/// kind says. `onCall` is told of every call of the pipeline.
void RunPageJob(IPrintPipelineFilter& filter,
                const PageJob& job,
                const std::function<void(const std::string& name)>& onCall);
} // namespace bench
