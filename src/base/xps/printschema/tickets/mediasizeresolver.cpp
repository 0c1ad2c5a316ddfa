#include "base/xps/printschema/tickets/mediasizeresolver.h"

#include <cwchar>

namespace base::xps::printschema
{
namespace
{
const MediaSizeEntry& UserDefaultMediaSize()
{
    wchar_t measurementSystem[8] = L"";
    const bool isKnown = GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IMEASURE, measurementSystem, 8) != 0;
    return MediaSizeTable::Shared().Lookup(DefaultMediaSizeOf(isKnown ? measurementSystem : L""));
}
} // namespace

MediaSizeEntry MediaSizeResolver::Resolve(Scope start) const
{
    MediaSizeData mediaSize;
    bool isReached = false;
    for (const Scope scope : {Scope::Page, Scope::Document, Scope::Job})
    {
        isReached = isReached || scope == start;
        if (!isReached)
        {
            continue;
        }
        mediaSize.Read(m_source.GetTicket(ToEPrintTicketScope(scope)));
        if (m_limits.Contains(mediaSize.GetSize()))
        {
            return mediaSize.GetMediaSizeEntry();
        }
    }
    mediaSize.SetFromEntry(UserDefaultMediaSize());
    if (!m_limits.Contains(mediaSize.GetSize()))
    {
        mediaSize.SetSize(m_limits.minimum);
    }
    return mediaSize.GetMediaSizeEntry();
}

std::int32_t DefaultMediaSizeOf(const std::wstring& measurementSystem)
{
    return std::wcstol(measurementSystem.c_str(), nullptr, 10) == 1 ? MediaSizeTable::kNorthAmericaLetter
                                                                    : MediaSizeTable::kIsoA4;
}
} // namespace base::xps::printschema
