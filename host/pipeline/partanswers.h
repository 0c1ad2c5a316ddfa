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
/// What the pipeline answers when there is no such element.
inline constexpr HRESULT kElementNotFound = __HRESULT_FROM_WIN32(ERROR_NOT_FOUND);

/// Answers GetUri.
[[nodiscard]] HRESULT HandOutName(const opc::PartName& name, BSTR* uri);

/// Answers GetStream of a part of the package.
[[nodiscard]] HRESULT HandOutContent(const PipelineJob& job,
                                     const opc::PartName& name,
                                     IPrintReadStream** stream,
                                     std::uint64_t limit = opc::Package::kPartLimit);

/// Answers GetPartCompression.
[[nodiscard]] HRESULT HandOutCompression(EXpsCompressionOptions kept, EXpsCompressionOptions* compression);

/// An empty content for a part of this name; its closing shows in the job's trace.
base::utility::ComPtr<PartWriteStream> MakeWriteStream(const PipelineJobPtr& job, const opc::PartName& part);
} // namespace host::pipeline
