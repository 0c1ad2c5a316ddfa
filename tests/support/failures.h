#pragma once

#include "base/logging/boundary.h"

namespace support
{
/// The HRESULT to which a COM boundary maps what `act` throws; S_OK if it throws nothing.
template <typename Action>
HRESULT HresultOf(Action&& act)
{
    return base::exception::AtBoundary([&] {
        act();
        return S_OK;
    });
}
} // namespace support
