#pragma once

#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "host/pipeline/calltrace.h"
#include "host/pipeline/documentconsumer.h"
#include "host/pipeline/documentprovider.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// Connects a filter with its source and its sink.
class Communicator final : public base::utility::ComObject<IInterFilterCommunicator>
{
public:
    Communicator(CallTrace& trace,
                 base::utility::ComPtr<DocumentProvider> provider,
                 base::utility::ComPtr<DocumentConsumer> consumer)
        : m_trace(trace), m_pProvider(std::move(provider)), m_pConsumer(std::move(consumer))
    {
    }

    STDMETHODIMP RequestReader(void** reader) override;
    STDMETHODIMP RequestWriter(void** writer) override;

private:
    CallTrace& m_trace;
    base::utility::ComPtr<DocumentProvider> m_pProvider;
    base::utility::ComPtr<DocumentConsumer> m_pConsumer;
};

/// Records what a filter requests from the pipeline, on any thread.
class ManagerControl final : public base::utility::ComObject<IPrintPipelineManagerControl>
{
public:
    explicit ManagerControl(PipelineJobPtr job) : m_pJob(std::move(job)) {}

    STDMETHODIMP RequestShutdown(HRESULT reason, IImgErrorInfo* errorInfo) override;
    STDMETHODIMP FilterFinished() override;

private:
    PipelineJobPtr m_pJob;
};

/// The user's print ticket, a fresh stream each time.
class TicketStreamFactory final : public base::utility::ComObject<IPrintReadStreamFactory>
{
public:
    TicketStreamFactory(CallTrace& trace, std::string ticket) : m_trace(trace), m_ticket(std::move(ticket)) {}

    STDMETHODIMP GetStream(IPrintReadStream** stream) override;

private:
    CallTrace& m_trace;
    std::string m_ticket;
};
} // namespace host::pipeline
