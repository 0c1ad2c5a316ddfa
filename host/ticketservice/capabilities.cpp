#include "host/ticketservice/capabilities.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace host::ticketservice
{
namespace
{
/// The rotation of the page's content on an upright sheet.
enum class Turn
{
    None,
    CounterClockwise,
    UpsideDown,
    Clockwise
};

struct Sheet
{
    MediaSize size;
    Margins margins;
};

const tickets::Node* FindRequestedOption(const tickets::Node& ticket, std::string_view featureName)
{
    const tickets::Node* const feature =
        tickets::FindChild(ticket, tickets::Kind::Feature, tickets::Keyword(featureName));
    return feature == nullptr ? nullptr : tickets::FindChild(*feature, tickets::Kind::Option);
}

Sheet ChooseSheet(const Device& device, const tickets::Node& ticket)
{
    const tickets::Node* const option = FindRequestedOption(ticket, "PageMediaSize");
    const Medium* const medium = option == nullptr ? nullptr : device.FindMedium(option->name);
    if (medium != nullptr && !medium->isCustom)
    {
        return {medium->smallest, medium->margins};
    }
    const std::optional<MediaSize> size =
        option == nullptr ? std::nullopt : tickets::FindRequestedSize(ticket, *option);
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

std::optional<Turn> FindTurn(const tickets::Node* option)
{
    constexpr std::pair<std::string_view, Turn> turns[] = {{"Portrait", Turn::None},
                                                           {"Landscape", Turn::CounterClockwise},
                                                           {"ReversePortrait", Turn::UpsideDown},
                                                           {"ReverseLandscape", Turn::Clockwise}};
    for (const auto& [name, turn] : turns)
    {
        if (option != nullptr && option->name == tickets::Keyword(name))
        {
            return turn;
        }
    }
    return std::nullopt;
}

Turn ChooseTurn(const Device& device, const tickets::Node& ticket)
{
    const tickets::Node* const described = device.FindFeature(tickets::Keyword("PageOrientation"));
    const tickets::Node* const preferred = described == nullptr ? nullptr : &GetDefaultOption(*described);
    const std::optional<Turn> requested = FindTurn(FindRequestedOption(ticket, "PageOrientation"));
    return requested ? *requested : FindTurn(preferred).value_or(Turn::None);
}

/// The sheet in the frame of the page as it is read.
Sheet TurnSheet(const Sheet& sheet, Turn turn)
{
    const auto& [size, edges] = sheet;
    const MediaSize exchanged = {size.heightMicrometres, size.widthMicrometres};
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

tickets::Node IntegerProperty(std::string_view name, int number)
{
    const tickets::Attribute type = {
        {std::string(tickets::kSchemaInstanceNamespace), "type"},
        tickets::ExpandedName{std::string(tickets::kSchemaNamespace), "integer"}};
    return {.kind = tickets::Kind::Property,
            .name = tickets::Keyword(name),
            .children = {
                {.kind = tickets::Kind::Value, .attributes = {type}, .content = std::to_string(number)}}};
}

tickets::Node ToPageImageableSize(const Sheet& sheet)
{
    const auto& [size, edges] = sheet;
    const int extentWidth = size.widthMicrometres - edges.leftMicrometres - edges.rightMicrometres;
    const int extentHeight = size.heightMicrometres - edges.topMicrometres - edges.bottomMicrometres;
    tickets::Node area = {.kind = tickets::Kind::Property,
                          .name = tickets::Keyword("ImageableArea"),
                          .children = {IntegerProperty("OriginWidth", edges.leftMicrometres),
                                       IntegerProperty("OriginHeight", edges.topMicrometres),
                                       IntegerProperty("ExtentWidth", extentWidth),
                                       IntegerProperty("ExtentHeight", extentHeight)}};
    return {.kind = tickets::Kind::Property,
            .name = tickets::Keyword("PageImageableSize"),
            .children = {IntegerProperty("ImageableSizeWidth", size.widthMicrometres),
                         IntegerProperty("ImageableSizeHeight", size.heightMicrometres),
                         std::move(area)}};
}
} // namespace

tickets::Document DescribeFor(const Device& device, const tickets::Node& ticket)
{
    tickets::Document capabilities = device.GetCapabilities();
    std::vector<tickets::Node>& children = capabilities.root.children;
    tickets::Node size =
        ToPageImageableSize(TurnSheet(ChooseSheet(device, ticket), ChooseTurn(device, ticket)));
    std::erase_if(children, [&](const tickets::Node& child) {
        return child.kind == size.kind && child.name == size.name;
    });
    children.push_back(std::move(size));
    return capabilities;
}
} // namespace host::ticketservice
