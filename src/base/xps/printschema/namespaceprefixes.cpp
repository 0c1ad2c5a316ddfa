#include "base/xps/printschema/namespaceprefixes.h"

#include <mutex>
#include <string>

namespace base::xps::printschema
{
using utility::Bstr;

namespace
{
constexpr wchar_t kFallbackPrefix[] = L"ns0000:";

struct Prefixes
{
    std::mutex mutex;
    Bstr privatePrefix;
    Bstr fallbackPrefix;
};

Prefixes& Shared()
{
    static Prefixes prefixes;
    return prefixes;
}

// Readers hold references: a prefix that already reads so stays the string it is.
void Store(Bstr& prefix, std::wstring_view text)
{
    if (prefix.View() != text)
    {
        prefix = Bstr(text);
    }
}
} // namespace

void SetPrivatePrefix(const wchar_t* prefix)
{
    std::wstring text = prefix == nullptr ? L"" : prefix;
    if (!text.empty())
    {
        text += L':';
    }
    Prefixes& prefixes = Shared();
    const std::lock_guard lock(prefixes.mutex);
    Store(prefixes.privatePrefix, text);
}

void ProvideFallbackPrefixes()
{
    Prefixes& prefixes = Shared();
    const std::lock_guard lock(prefixes.mutex);
    if (prefixes.privatePrefix.Length() == 0)
    {
        Store(prefixes.privatePrefix, kFallbackPrefix);
    }
    Store(prefixes.fallbackPrefix, kFallbackPrefix);
}

const Bstr& GetPrivatePrefix()
{
    Prefixes& prefixes = Shared();
    const std::lock_guard lock(prefixes.mutex);
    return prefixes.privatePrefix;
}

const Bstr& GetFallbackPrefix()
{
    Prefixes& prefixes = Shared();
    const std::lock_guard lock(prefixes.mutex);
    return prefixes.fallbackPrefix;
}
} // namespace base::xps::printschema
