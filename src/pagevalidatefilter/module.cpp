#include "pagevalidatefilter/module.h"

#include <new>

#include "base/utility/comptr.h"
#include "pagevalidatefilter/classfactory.h"

using base::utility::ComPtr;
using pagevalidatefilter::ClassFactory;

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** result)
{
    if (result == nullptr)
    {
        return E_POINTER;
    }
    *result = nullptr;
    if (classId != pagevalidatefilter::kPageValidateXpsFilter)
    {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    const auto factory = ComPtr<ClassFactory>::Adopt(new (std::nothrow) ClassFactory());
    return factory ? factory->QueryInterface(iid, result) : E_OUTOFMEMORY;
}

STDAPI DllCanUnloadNow()
{
    return pagevalidatefilter::g_moduleCount != 0 ? S_FALSE : S_OK;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*)
{
    if (reason == DLL_PROCESS_ATTACH)
    {
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}
