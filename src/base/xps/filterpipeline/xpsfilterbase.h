#pragma once

#include <atomic>
#include <memory>

#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "base/utility/driverinfo.h"
#include "platform/filterpipeline.h"

namespace base::xps::filterpipeline
{
/// The base of a filter in the print filter pipeline. It keeps the pipeline's objects, runs the derived
/// filter's work with COM initialised on the pipeline's thread, and maps exceptions to HRESULTs. What is
/// fixed, as the order of virtual functions and the shutdown: docs/surface.md.
///
/// The pipeline owns the filter. StartOperation runs on one thread; ShutdownOperation may be called on
/// another at any time.
class XpsFilterBase : public utility::ComObject<IPrintPipelineFilter>
{
public:
    /// E_FAIL for a null argument; nothing is kept then. Also sets the driver's private namespace prefix for
    /// all tickets; a driver may have none.
    STDMETHODIMP InitializeFilter(IInterFilterCommunicator* communicator,
                                  IPrintPipelinePropertyBag* propertyBag,
                                  IPrintPipelineManagerControl* pipelineControl) override;

    /// E_FAIL for any failure. Calls FilterFinished even if cancelling failed.
    STDMETHODIMP ShutdownOperation() override;

    /// Returns the HRESULT of the work; E_FAIL before InitializeFilter has succeeded. After a failure it also
    /// requests a shutdown of the pipeline.
    STDMETHODIMP StartOperation() override;

protected:
    XpsFilterBase() noexcept;
    ~XpsFilterBase() override;

    /// Calls the spooler on first use. Throws std::logic_error before InitializeFilter, and if reading the
    /// printer handle or the spooler fails. It stays without a caller: docs/surface.md.
    virtual utility::DriverInfo* GetDriverInfo();

    /// The filter's work.
    virtual void RunOperation() = 0;
    /// Called once after RunOperation, whether it succeeded or not.
    virtual void EndOperation() = 0;
    /// Called by ShutdownOperation, on its thread.
    virtual void CancelOperation() = 0;

    /// Gets the document provider or the document consumer of the pipeline; the reference must be empty.
    /// Throws std::invalid_argument for a null address, std::logic_error before InitializeFilter,
    /// HresultError if the communicator fails. For an object without the interface it requests a shutdown
    /// with S_OK and returns the object all the same (docs/surface.md).
    void GetReader(utility::ComPtr<IXpsDocumentProvider>* reader) const;
    void GetWriter(utility::ComPtr<IXpsDocumentConsumer>* writer) const;

    /// Null before InitializeFilter.
    IPrintPipelinePropertyBag* GetPropertyBag() const noexcept { return m_pPropertyBag.Get(); }

private:
    utility::ComPtr<IInterFilterCommunicator> m_pCommunicator;
    utility::ComPtr<IPrintPipelinePropertyBag> m_pPropertyBag;
    utility::ComPtr<IPrintPipelineManagerControl> m_pPipelineControl;
    std::unique_ptr<utility::DriverInfo> m_pDriverInfo;

    // For a debugger only.
    static inline std::atomic<ULONG> s_liveFilters{0};
};
} // namespace base::xps::filterpipeline
