#pragma once

#include <type_traits>

#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// A part of this pipeline. A private interface id, `Self::kOwnId`, finds the object behind a platform
/// interface that a filter passes in.
template <typename Self, typename Interface>
class OwnPart : public base::utility::ComObject<Interface>
{
public:
    STDMETHODIMP QueryInterface(REFIID iid, void** result) override
    {
        const bool isBase = std::is_base_of_v<IPartBase, Interface> && iid == __uuidof(IPartBase);
        if (result == nullptr || (!isBase && iid != Self::kOwnId))
        {
            return base::utility::ComObject<Interface>::QueryInterface(iid, result);
        }
        *result = static_cast<Self*>(this);
        this->AddRef();
        return S_OK;
    }

    /// The part behind an interface that a filter hands back; null for one that is not of this pipeline.
    static base::utility::ComPtr<Self> Recognise(IUnknown* object)
    {
        base::utility::ComPtr<Self> part;
        if (object != nullptr)
        {
            static_cast<void>(object->QueryInterface(Self::kOwnId, part.ReceiveUntyped()));
        }
        return part;
    }
};
} // namespace host::pipeline
