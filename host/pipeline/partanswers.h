#pragma once

#include <cstdint>

#include "base/utility/comptr.h"
#include "host/opc/package.h"
#include "host/opc/partname.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/printstreams.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// The pipeline's HRESULT for an element that does not exist.
inline constexpr HRESULT kElementNotFound = __HRESULT_FROM_WIN32(ERROR_NOT_FOUND);

/// The body of GetUri.
[[nodiscard]] HRESULT CopyPartUri(const opc::PartName& name, BSTR* uri);

/// The body of GetStream for a part of the package; with an edit, the edited content.
[[nodiscard]] HRESULT OpenPartContent(const PipelineJob& job,
                                      const opc::PartName& name,
                                      IPrintReadStream** stream,
                                      std::uint64_t limit = opc::Package::kPartLimit,
                                      const TicketEdit& edit = {});

/// The body of GetPartCompression.
[[nodiscard]] HRESULT CopyCompression(EXpsCompressionOptions kept, EXpsCompressionOptions* compression);

/// A stream for new content of a part; closing it is recorded in the job's trace.
base::utility::ComPtr<PartWriteStream> MakeWriteStream(const PipelineJobPtr& job, const opc::PartName& part);
} // namespace host::pipeline
