#pragma once

#include "base/logging/boundary.h"

namespace support
{
/// The HRESULT that a COM boundary makes of what `act` throws; S_OK when it throws nothing.
template <typename Action>
HRESULT HresultOf(Action&& act)
{
    return base::exception::AtBoundary([&] {
        act();
        return S_OK;
    });
}
} // namespace support
