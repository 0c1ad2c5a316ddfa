#pragma once

#include "base/utility/comptr.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// Sends a part as what it is.
inline HRESULT SendPart(IXpsDocumentConsumer& consumer, const base::utility::ComPtr<IUnknown>& part)
{
    if (const auto page = part.TryQuery<IFixedPage>())
    {
        return consumer.SendFixedPage(page.Get());
    }
    if (const auto document = part.TryQuery<IFixedDocument>())
    {
        return consumer.SendFixedDocument(document.Get());
    }
    if (const auto sequence = part.TryQuery<IFixedDocumentSequence>())
    {
        return consumer.SendFixedDocumentSequence(sequence.Get());
    }
    return consumer.SendXpsDocument(part.TryQuery<IXpsDocument>().Get());
}
} // namespace host::pipeline
