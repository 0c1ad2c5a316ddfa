#include "host/pipeline/endpoints.h"

#include "host/pipeline/part.h"
#include "host/pipeline/printstreams.h"
#include "host/pipeline/resulttext.h"

namespace host::pipeline
{
STDMETHODIMP Communicator::RequestReader(void** reader)
{
    return m_trace.Answer("IInterFilterCommunicator::RequestReader", "", [&] {
        return HandOut(reader, [&] { return m_pProvider; });
    });
}

STDMETHODIMP Communicator::RequestWriter(void** writer)
{
    return m_trace.Answer("IInterFilterCommunicator::RequestWriter", "", [&] {
        return HandOut(writer, [&] { return m_pConsumer; });
    });
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
        return HandOut(stream, [&] { return base::utility::MakeCom<PartReadStream>(m_ticket); });
    });
}
} // namespace host::pipeline
