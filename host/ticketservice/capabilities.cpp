#include "ticketservice/capabilities.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace host::ticketservice
{
namespace
{
/// How the page's content lies on an upright sheet.
enum class Turn
{
    None,
    CounterClockwise,
    UpsideDown,
    Clockwise
};

struct Sheet
{
    Size size;
    Margins margins;
};

const Element* FindRequestedOption(const Element& ticket, std::string_view featureName)
{
    const Element* const feature = FindChild(ticket, Kind::Feature, Keyword(featureName));
    return feature == nullptr ? nullptr : FindChild(*feature, Kind::Option);
}

Sheet ChooseSheet(const Device& device, const Element& ticket)
{
    const Element* const option = FindRequestedOption(ticket, "PageMediaSize");
    const Medium* const medium = option == nullptr ? nullptr : device.FindMedium(option->name);
    if (medium != nullptr && !medium->isCustom)
    {
        return {medium->smallest, medium->margins};
    }
    const std::optional<Size> size = option == nullptr ? std::nullopt : FindRequestedSize(ticket, *option);
    const auto takesSize = [&](const Medium& each) { return each.isCustom && each.Takes(*size); };
    if (size && medium != nullptr && takesSize(*medium))
    {
        return {*size, medium->margins};
    }
    const std::vector<Medium>& media = device.GetMedia();
    const auto custom = size ? std::find_if(media.begin(), media.end(), takesSize) : media.end();
    if (custom != media.end())
    {
        return {*size, custom->margins};
    }
    return {device.GetDefaultMedium().smallest, device.GetDefaultMedium().margins};
}

std::optional<Turn> FindTurn(const Element* option)
{
    constexpr std::pair<std::string_view, Turn> turns[] = {{"Portrait", Turn::None},
                                                           {"Landscape", Turn::CounterClockwise},
                                                           {"ReversePortrait", Turn::UpsideDown},
                                                           {"ReverseLandscape", Turn::Clockwise}};
    for (const auto& [name, turn] : turns)
    {
        if (option != nullptr && option->name == Keyword(name))
        {
            return turn;
        }
    }
    return std::nullopt;
}

Turn ChooseTurn(const Device& device, const Element& ticket)
{
    const Element* const described = device.FindFeature(Keyword("PageOrientation"));
    const Element* const preferred = described == nullptr ? nullptr : &GetDefaultOption(*described);
    const std::optional<Turn> requested = FindTurn(FindRequestedOption(ticket, "PageOrientation"));
    return requested ? *requested : FindTurn(preferred).value_or(Turn::None);
}

/// The sheet as seen by someone who holds the page so that it can be read.
Sheet TurnSheet(const Sheet& sheet, Turn turn)
{
    const auto& [size, edges] = sheet;
    const Size exchanged = {size.heightMicrometres, size.widthMicrometres};
    switch (turn)
    {
    case Turn::None:
        break;
    case Turn::CounterClockwise:
        return {exchanged,
                {.leftMicrometres = edges.bottomMicrometres,
                 .topMicrometres = edges.leftMicrometres,
                 .rightMicrometres = edges.topMicrometres,
                 .bottomMicrometres = edges.rightMicrometres}};
    case Turn::UpsideDown:
        return {size,
                {.leftMicrometres = edges.rightMicrometres,
                 .topMicrometres = edges.bottomMicrometres,
                 .rightMicrometres = edges.leftMicrometres,
                 .bottomMicrometres = edges.topMicrometres}};
    case Turn::Clockwise:
        return {exchanged,
                {.leftMicrometres = edges.topMicrometres,
                 .topMicrometres = edges.rightMicrometres,
                 .rightMicrometres = edges.bottomMicrometres,
                 .bottomMicrometres = edges.leftMicrometres}};
    }
    return sheet;
}

Element IntegerProperty(std::string_view name, int number)
{
    const Attribute type = {{std::string(kSchemaInstanceNamespace), "type"},
                            ExpandedName{std::string(kSchemaNamespace), "integer"}};
    return {.kind = Kind::Property,
            .name = Keyword(name),
            .children = {{.kind = Kind::Value, .attributes = {type}, .content = std::to_string(number)}}};
}

Element ToPageImageableSize(const Sheet& sheet)
{
    const auto& [size, edges] = sheet;
    const int extentWidth = size.widthMicrometres - edges.leftMicrometres - edges.rightMicrometres;
    const int extentHeight = size.heightMicrometres - edges.topMicrometres - edges.bottomMicrometres;
    Element area = {.kind = Kind::Property,
                    .name = Keyword("ImageableArea"),
                    .children = {IntegerProperty("OriginWidth", edges.leftMicrometres),
                                 IntegerProperty("OriginHeight", edges.topMicrometres),
                                 IntegerProperty("ExtentWidth", extentWidth),
                                 IntegerProperty("ExtentHeight", extentHeight)}};
    return {.kind = Kind::Property,
            .name = Keyword("PageImageableSize"),
            .children = {IntegerProperty("ImageableSizeWidth", size.widthMicrometres),
                         IntegerProperty("ImageableSizeHeight", size.heightMicrometres),
                         std::move(area)}};
}
} // namespace

Document DescribeFor(const Device& device, const Element& ticket)
{
    Document capabilities = device.GetCapabilities();
    std::vector<Element>& children = capabilities.root.children;
    Element size = ToPageImageableSize(TurnSheet(ChooseSheet(device, ticket), ChooseTurn(device, ticket)));
    std::erase_if(children,
                  [&](const Element& child) { return child.kind == size.kind && child.name == size.name; });
    children.push_back(std::move(size));
    return capabilities;
}
} // namespace host::ticketservice
