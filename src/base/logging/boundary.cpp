#include "base/logging/boundary.h"

#include <new>

#include "base/logging/errors.h"

namespace base::exception
{
HRESULT MapCurrentException() noexcept
{
    try
    {
        throw;
    }
    catch (const std::bad_alloc&)
    {
        return E_OUTOFMEMORY;
    }
    catch (const HresultError& error)
    {
        return error.GetHresult();
    }
    catch (const std::exception&)
    {
        return E_FAIL;
    }
    catch (...)
    {
        return E_UNEXPECTED;
    }
}
} // namespace base::exception
