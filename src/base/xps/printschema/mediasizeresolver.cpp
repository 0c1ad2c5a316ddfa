#include "base/xps/printschema/mediasizeresolver.h"

#include <cwchar>

namespace base::xps::printschema
{
namespace
{
const MediaSizeEntry& UserDefaultMediaSize()
{
    // The setting is one digit; without it the text stays empty.
    wchar_t measurementSystem[8] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IMEASURE, measurementSystem, 8);
    return MediaSizeTable::Shared().Lookup(DefaultMediaSizeOf(measurementSystem));
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

std::int32_t DefaultMediaSizeOf(std::wstring_view measurementSystem)
{
    return measurementSystem == L"1" ? MediaSizeTable::kNorthAmericaLetter : MediaSizeTable::kIsoA4;
}
} // namespace base::xps::printschema
