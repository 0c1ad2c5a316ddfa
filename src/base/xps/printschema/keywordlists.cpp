#include "base/xps/printschema/keywordlists.h"

#include <initializer_list>

#include "base/xps/printschema/vocabulary/mediasizetable.h"

namespace base::xps::printschema
{
namespace
{
void AddQnames(SchemaBase& list, NamespaceId namespaceId, std::initializer_list<const wchar_t*> localNames)
{
    for (const wchar_t* localName : localNames)
    {
        list.AddQname(namespaceId, localName);
    }
}
} // namespace

PageMediaSizeFeatureSchema::PageMediaSizeFeatureSchema()
{
    AddQname(NamespaceId::Keywords, L"PageMediaSize");
}

MediaSizeOptionSchema::MediaSizeOptionSchema()
{
    for (const auto& [value, entry] : MediaSizeTable::Shared().GetEntries())
    {
        if (value != MediaSizeTable::kOptionUnknown)
        {
            AddQname(entry.name);
        }
    }
}

InputBinFeatureSchema::InputBinFeatureSchema()
{
    AddQnames(*this, NamespaceId::Keywords, {L"JobInputBin", L"DocumentInputBin", L"PageInputBin"});
}

InputBinOptionSchema::InputBinOptionSchema()
{
    AddQnames(*this,
              NamespaceId::Keywords,
              {
                  L"AutoSelect",
                  L"Manual",
                  L"Cassette",
                  L"Tractor",
                  L"AutoSheetFeeder",
                  L"Tray1",
                  L"Tray2",
                  L"Tray3",
                  L"Tray4",
                  L"Tray5",
              });
}

FeedDirectionSchema::FeedDirectionSchema()
{
    AddQnames(*this, NamespaceId::Keywords, {L"LongEdgeFirst", L"ShortEdgeFirst"});
}

PageOrientationFeatureSchema::PageOrientationFeatureSchema()
{
    AddQname(NamespaceId::Keywords, L"PageOrientation");
}

PageOrientationOptionSchema::PageOrientationOptionSchema()
{
    AddQnames(
        *this, NamespaceId::Keywords, {L"Landscape", L"Portrait", L"ReverseLandscape", L"ReversePortrait"});
}

PageScalingFeatureSchema::PageScalingFeatureSchema()
{
    AddQname(NamespaceId::Keywords, L"PageScaling");
}

PageScalingOptionSchema::PageScalingOptionSchema()
{
    AddQnames(*this,
              NamespaceId::Keywords,
              {
                  L"Custom",
                  L"CustomSquare",
                  L"FitApplicationBleedSizeToPageImageableSize",
                  L"FitApplicationContentSizeToPageImageableSize",
                  L"FitApplicationMediaSizeToPageImageableSize",
                  L"FitApplicationMediaSizeToPageMediaSize",
                  L"None",
              });
    // The driver's option: a keyword with the same text is another option (docs/surface.md).
    AddQname(NamespaceId::Private, L"FitApplicationImageableSizeToImageableSize");
}

PrintableMediaSizeFeatureSchema::PrintableMediaSizeFeatureSchema()
{
    AddQnames(*this,
              NamespaceId::Private,
              {L"JobPrintableMediaSize", L"DocumentPrintableMediaSize", L"PagePrintableMediaSize"});
}

PrintableMediaSizeOptionSchema::PrintableMediaSizeOptionSchema()
{
    AddQname(NamespaceId::Private, L"PrintableMediaSize");
}
} // namespace base::xps::printschema
