#include "host/pipeline/endpoints.h"

#include <string>

#include "host/pipeline/printstreams.h"
#include "host/pipeline/resulttext.h"

namespace host::pipeline
{
using base::utility::ComPtr;

namespace
{
template <typename End>
HRESULT HandOut(const ComPtr<End>& end, void** result)
{
    if (result == nullptr)
    {
        return E_POINTER;
    }
    *result = ComPtr<End>(end).Detach();
    return S_OK;
}
} // namespace

STDMETHODIMP Communicator::RequestReader(void** reader)
{
    return m_trace.Answer(
        "IInterFilterCommunicator::RequestReader", "", [&] { return HandOut(m_pProvider, reader); });
}

STDMETHODIMP Communicator::RequestWriter(void** writer)
{
    return m_trace.Answer(
        "IInterFilterCommunicator::RequestWriter", "", [&] { return HandOut(m_pConsumer, writer); });
}

STDMETHODIMP ManagerControl::RequestShutdown(HRESULT reason, IImgErrorInfo*)
{
    return m_pJob->trace.Answer("IPrintPipelineManagerControl::RequestShutdown", FormatResult(reason), [&] {
        HRESULT none = S_OK;
        if (FAILED(reason))
        {
            m_pJob->shutdownReason.compare_exchange_strong(none, reason);
        }
        return S_OK;
    });
}

STDMETHODIMP ManagerControl::FilterFinished()
{
    return m_pJob->trace.Answer("IPrintPipelineManagerControl::FilterFinished", "", [] { return S_OK; });
}

STDMETHODIMP TicketStreamFactory::GetStream(IPrintReadStream** stream)
{
    return m_trace.Answer("IPrintReadStreamFactory::GetStream", "PerUserPrintTicket", [&] {
        if (stream == nullptr)
        {
            return E_POINTER;
        }
        *stream = nullptr;
        *stream = base::utility::MakeCom<PartReadStream>(m_ticket).Detach();
        return S_OK;
    });
}
} // namespace host::pipeline
