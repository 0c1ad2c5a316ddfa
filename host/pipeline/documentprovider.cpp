#include "host/pipeline/documentprovider.h"

#include "base/utility/comptr.h"
#include "host/pipeline/treeparts.h"

namespace host::pipeline
{
using base::utility::MakeCom;

DocumentProvider::DocumentProvider(PipelineJobPtr job) : m_pJob(std::move(job)), m_document(m_pJob->package)
{
}

STDMETHODIMP DocumentProvider::GetXpsPart(IUnknown** part)
{
    constexpr const char* method = "IXpsDocumentProvider::GetXpsPart";
    if (part == nullptr)
    {
        return m_pJob->trace.Answer(method, "", [] { return E_POINTER; });
    }
    *part = nullptr;
    if (m_pJob->isCancelled)
    {
        return m_pJob->trace.Answer(method, "", [] { return E_ABORT; });
    }
    // The part's name is known only once it has been found.
    const HRESULT found = m_pJob->trace.Attempt([&] {
        *part = MakeNext();
        return S_OK;
    });
    m_pJob->trace.Record(method, m_pJob->currentPart, found, CallRole::HandsOutPart);
    return found;
}

IUnknown* DocumentProvider::MakeNext()
{
    if (!m_rootPassed)
    {
        m_rootPassed = true;
        return MakeCom<DocumentRootPart>(m_pJob).Detach();
    }
    const auto next = m_document.Next();
    m_pJob->currentPart = next ? next->name.Text() : std::string();
    if (!next)
    {
        m_pJob->isReadToEnd = true;
        return nullptr;
    }
    switch (next->kind)
    {
    case xps::JobPartKind::FixedDocumentSequence:
        return MakeCom<SequencePart>(m_pJob, *next).Detach();
    case xps::JobPartKind::FixedDocument:
        return MakeCom<DocumentPart>(m_pJob, *next).Detach();
    case xps::JobPartKind::FixedPage:
        return MakeCom<PagePart>(m_pJob, *next).Detach();
    }
    return nullptr;
}
} // namespace host::pipeline
