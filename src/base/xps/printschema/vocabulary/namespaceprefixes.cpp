#include "base/xps/printschema/vocabulary/namespaceprefixes.h"

#include <map>
#include <mutex>
#include <string>

#include "base/utility/lock.h"

namespace base::xps::printschema
{
using utility::Bstr;

namespace
{
/// The current prefixes. Earlier prefixes are kept, as other threads may hold references to them. There are
/// few: one for each driver.
struct Prefixes
{
    utility::Lock lock;
    std::map<std::wstring, Bstr> known;
    Bstr none;
    // Null if the driver has none: the fallback is used.
    const Bstr* privatePrefix = nullptr;
    const Bstr* fallbackPrefix = &none;

    const Bstr* Keep(const std::wstring& text)
    {
        const auto kept = known.find(text);
        return kept != known.end() ? &kept->second : &known.emplace(text, Bstr(text)).first->second;
    }
};

Prefixes& Shared()
{
    static Prefixes prefixes;
    return prefixes;
}
} // namespace

void SetPrivatePrefix(const wchar_t* prefix)
{
    const std::wstring text = prefix == nullptr ? L"" : prefix;
    Prefixes& prefixes = Shared();
    const std::lock_guard guard(prefixes.lock);
    prefixes.privatePrefix = text.empty() ? nullptr : prefixes.Keep(text + L':');
}

void ProvideFallbackPrefixes()
{
    Prefixes& prefixes = Shared();
    const std::lock_guard guard(prefixes.lock);
    prefixes.fallbackPrefix = prefixes.Keep(L"ns0000:");
}

const Bstr& GetPrivatePrefix()
{
    Prefixes& prefixes = Shared();
    const std::lock_guard guard(prefixes.lock);
    return prefixes.privatePrefix != nullptr ? *prefixes.privatePrefix : *prefixes.fallbackPrefix;
}

const Bstr& GetFallbackPrefix()
{
    Prefixes& prefixes = Shared();
    const std::lock_guard guard(prefixes.lock);
    return *prefixes.fallbackPrefix;
}
} // namespace base::xps::printschema
