#pragma once

#include "base/utility/comobject.h"
#include "host/pipeline/pipelinejob.h"
#include "host/xps/xpsdocument.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// Hands out the parts of a document one by one, read as they are asked for. Used on the job's thread.
class DocumentProvider final : public base::utility::ComObject<IXpsDocumentProvider>
{
public:
    /// Throws PackageError for a package without a fixed document sequence.
    explicit DocumentProvider(PipelineJobPtr job);

    /// S_OK and null after the last part; E_ABORT once the job is cancelled.
    STDMETHODIMP GetXpsPart(IUnknown** part) override;

private:
    IUnknown* MakeNext();

    PipelineJobPtr m_pJob;
    xps::XpsDocument m_document;
    bool m_rootPassed = false;
};
} // namespace host::pipeline
