#include "base/xps/filterpipeline/xpsfilterbase.h"

#include <stdexcept>

#include "base/logging/boundary.h"
#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/driverpropertybag.h"
#include "base/utility/safecoinit.h"
#include "base/utility/variant.h"
#include "base/xps/printschema/vocabulary/namespaceprefixes.h"

namespace base::xps::filterpipeline
{
using exception::AtBoundary;
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;

namespace
{
/// Null if the driver has none.
Bstr ReadPrivatePrefix(IPrintPipelinePropertyBag& pipelineBag)
{
    const auto driverBag = utility::FindDriverPropertyBag(pipelineBag);
    Bstr prefix;
    if (!driverBag || FAILED(driverBag->GetString(Bstr(L"QuellmarkNsPrefix").Get(), prefix.Receive())))
    {
        return {};
    }
    return prefix;
}

/// Gets one end of the pipeline with the communicator's `request`.
template <typename Interface>
void RequestEnd(ComPtr<Interface>* end,
                IInterFilterCommunicator* communicator,
                HRESULT (STDMETHODCALLTYPE IInterFilterCommunicator::*request)(void**),
                IPrintPipelineManagerControl* pipelineControl)
{
    if (end == nullptr)
    {
        exception::Throw<std::invalid_argument>("ppStream is null.");
    }
    if (communicator == nullptr)
    {
        throw std::logic_error("This function must be called after SetUp() call.");
    }
    ThrowIfFailed((communicator->*request)(end->ReceiveUntyped()));
    if (*end && !end->template TryQuery<Interface>())
    {
        // The pipeline has connected the wrong filters. The code is S_OK (docs/surface.md).
        pipelineControl->RequestShutdown(S_OK, nullptr);
    }
}
} // namespace

XpsFilterBase::XpsFilterBase() noexcept
{
    ++s_liveFilters;
}

XpsFilterBase::~XpsFilterBase()
{
    --s_liveFilters;
}

STDMETHODIMP XpsFilterBase::InitializeFilter(IInterFilterCommunicator* communicator,
                                             IPrintPipelinePropertyBag* propertyBag,
                                             IPrintPipelineManagerControl* pipelineControl)
{
    if (communicator == nullptr || propertyBag == nullptr || pipelineControl == nullptr)
    {
        return E_FAIL;
    }
    return AtBoundary([&] {
        // First of all: memory may run out here, and then nothing is kept.
        printschema::SetPrivatePrefix(ReadPrivatePrefix(*propertyBag).Get());
        m_pCommunicator = ComPtr<IInterFilterCommunicator>(communicator);
        m_pPropertyBag = ComPtr<IPrintPipelinePropertyBag>(propertyBag);
        m_pPipelineControl = ComPtr<IPrintPipelineManagerControl>(pipelineControl);
        return S_OK;
    });
}

STDMETHODIMP XpsFilterBase::ShutdownOperation()
{
    const HRESULT cancelled = AtBoundary([&] {
        CancelOperation();
        return S_OK;
    });
    const HRESULT finished =
        AtBoundary([&] { return m_pPipelineControl ? m_pPipelineControl->FilterFinished() : S_OK; });
    // S_OK or E_FAIL and nothing else (docs/surface.md).
    return SUCCEEDED(cancelled) && SUCCEEDED(finished) ? S_OK : E_FAIL;
}

STDMETHODIMP XpsFilterBase::StartOperation()
{
    if (!m_pCommunicator || !m_pPropertyBag || !m_pPipelineControl)
    {
        return E_FAIL;
    }
    return AtBoundary([&] {
        const utility::SafeCoInit com;
        const HRESULT hr = AtBoundary([&] {
            RunOperation();
            return S_OK;
        });
        EndOperation();
        if (FAILED(hr))
        {
            ThrowIfFailed(m_pPipelineControl->RequestShutdown(hr, nullptr));
        }
        return hr;
    });
}

utility::DriverInfo* XpsFilterBase::GetDriverInfo()
{
    if (!m_pPropertyBag)
    {
        exception::Throw<std::logic_error>("invalid function call sequence.");
    }
    if (!m_pDriverInfo)
    {
        utility::Variant handle;
        ThrowIfFailed(m_pPropertyBag->GetProperty(L"PrinterHandle", handle.Receive()));
        m_pDriverInfo = std::make_unique<utility::DriverInfo>(handle.GetHandle());
    }
    return m_pDriverInfo.get();
}

void XpsFilterBase::GetReader(ComPtr<IXpsDocumentProvider>* reader) const
{
    RequestEnd(
        reader, m_pCommunicator.Get(), &IInterFilterCommunicator::RequestReader, m_pPipelineControl.Get());
}

void XpsFilterBase::GetWriter(ComPtr<IXpsDocumentConsumer>* writer) const
{
    RequestEnd(
        writer, m_pCommunicator.Get(), &IInterFilterCommunicator::RequestWriter, m_pPipelineControl.Get());
}
} // namespace base::xps::filterpipeline
