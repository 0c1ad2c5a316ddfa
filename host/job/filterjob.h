#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "host/opc/zipwriter.h"
#include "host/pipeline/calltrace.h"
#include "host/report/pagereport.h"

namespace host::job
{
/// One run of the filter over a document.
struct FilterJob
{
    std::filesystem::path input;
    /// Empty for a run that writes nothing.
    std::optional<std::filesystem::path> output;
    std::filesystem::path module;
    std::string userTicket;
    /// Of the platform's spooler; empty for a printer that there is only offline.
    std::optional<std::wstring> printer;
    /// What the driver's property bag holds; empty for a value that it does not have.
    std::optional<std::int32_t> tesselType;
    std::optional<std::string> privatePrefix;
    /// Whether new markup is taken that is not well-formed or lies in no namespace of XPS.
    bool acceptsMalformed = false;

    /// Told, on any thread, of each page that the filter has sent, and of each call of the pipeline.
    std::function<void(const report::PageReport&)> onPage;
    pipeline::CallTrace::Listener onCall;
    /// Of what is told of a page.
    report::Detail detail = report::Detail::None;
    /// Asked now and then whether to ask the filter to shut down.
    std::function<bool()> isCancelled;
    /// Told while the output is written; what it throws stops the writing.
    opc::WriteListener onWriting;
};

/// What a run came to.
struct FilterOutcome
{
    /// The filter's own answer, or what it asked the pipeline to shut down for, or E_UNEXPECTED for one that
    /// left its work undone, or E_INVALIDARG for one that wrote a page which cannot be taken.
    HRESULT result = S_OK;
    /// What it left undone; empty for nothing.
    std::string debt;
    /// What is wrong with the new markup of the page that was not taken; empty for none.
    std::string markupFault;
    /// Where the filter was when it failed, or that page; empty before the first part.
    std::string part;
    std::size_t documents = 0;
    std::size_t pages = 0;
    /// How many objects of the pipeline the filter did not let go of, and whether its module says that it is
    /// still in use: both a filter's fault.
    std::size_t keptObjects = 0;
    bool isModuleInUse = false;
};

/// Plays the print pipeline around the filter: on a thread of its own, under the current user's token. The
/// output is written only when the filter succeeds. The print ticket library must be loaded, and COM
/// initialised on the thread.
///
/// Throws opc::PackageError when the document cannot be used, opc::FileError when the output cannot be
/// written, which is found out before the filter starts as far as it can be, and std::runtime_error for a
/// module or a printer that cannot be used.
FilterOutcome RunFilter(const FilterJob& job);
} // namespace host::job
