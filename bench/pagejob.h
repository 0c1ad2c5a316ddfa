#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "platform/filterpipeline.h"

namespace bench
{
/// What the filter does with each page of a job. Inherited pages are passed and have no ticket of their own;
/// all others have one.
enum class PageKind
{
    Inherited,
    Passed,
    Turned,
    Refitted
};

/// Throws std::invalid_argument for an unknown name.
PageKind KindOf(const std::string& name);

struct PageJob
{
    PageKind kind;
    std::size_t pages;
    std::string markup;
    /// Replaces the ticket of the kind; empty to keep that.
    std::string ticket = {};
};

/// A page with one line on it.
extern const std::string kSmallPage;

/// Runs a filter over a job of one document. Each page is created when the filter asks for it and destroyed
/// after the filter has sent it. Throws if the filter fails, or if it treats a page otherwise than its kind
/// says. Every call of the pipeline is reported to `onCall`.
void RunPageJob(IPrintPipelineFilter& filter,
                const PageJob& job,
                const std::function<void(const std::string& name)>& onCall);
} // namespace bench
