#include "host/ticketservice/operations.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace host::ticketservice
{
namespace
{
/// The options of PageOrientation, each a quarter turn of the page's content further counterclockwise on an
/// upright sheet.
constexpr std::array<std::string_view, 4> kOrientations = {
    "Portrait", "Landscape", "ReversePortrait", "ReverseLandscape"};

struct Sheet
{
    MediaSize size;
    Margins margins;
};

Sheet ChooseSheet(const Device& device, const Node& ticket)
{
    const Node* const option = tickets::FindSelectedOption(ticket, Keyword("PageMediaSize"));
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

std::optional<std::size_t> CountQuarterTurns(const Node* orientation)
{
    const auto* const found =
        std::find_if(kOrientations.begin(), kOrientations.end(), [&](std::string_view each) {
            return orientation != nullptr && orientation->name == Keyword(each);
        });
    return found == kOrientations.end() ? std::nullopt
                                        : std::optional<std::size_t>(found - kOrientations.begin());
}

std::size_t ChooseQuarterTurns(const Device& device, const Node& ticket)
{
    const auto requested = CountQuarterTurns(tickets::FindSelectedOption(ticket, Keyword("PageOrientation")));
    const Node* const described = device.FindFeature(Keyword("PageOrientation"));
    const Node* const preferred = described == nullptr ? nullptr : &GetDefaultOption(*described);
    return requested ? *requested : CountQuarterTurns(preferred).value_or(0);
}

/// The sheet in the frame of the page as it is read.
Sheet TurnSheet(Sheet sheet, std::size_t quarterTurns)
{
    for (std::size_t turn = 0; turn < quarterTurns; ++turn)
    {
        const auto [size, edges] = sheet;
        sheet = {{size.heightMicrometres, size.widthMicrometres},
                 {.leftMicrometres = edges.bottomMicrometres,
                  .topMicrometres = edges.leftMicrometres,
                  .rightMicrometres = edges.topMicrometres,
                  .bottomMicrometres = edges.rightMicrometres}};
    }
    return sheet;
}

Node IntegerProperty(std::string_view name, int number)
{
    const tickets::Attribute type = {{std::string(tickets::kSchemaInstanceNamespace), "type"},
                                     ExpandedName{std::string(tickets::kSchemaNamespace), "integer"}};
    return {.kind = Kind::Property,
            .name = Keyword(name),
            .children = {{.kind = Kind::Value, .attributes = {type}, .content = std::to_string(number)}}};
}

Node ToPageImageableSize(const Sheet& sheet)
{
    const auto& [size, edges] = sheet;
    const int extentWidth = size.widthMicrometres - edges.leftMicrometres - edges.rightMicrometres;
    const int extentHeight = size.heightMicrometres - edges.topMicrometres - edges.bottomMicrometres;
    Node area = {.kind = Kind::Property,
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

Document DescribeFor(const Device& device, const Node& ticket)
{
    Document capabilities = device.GetCapabilities();
    std::vector<Node>& children = capabilities.root.children;
    Node size =
        ToPageImageableSize(TurnSheet(ChooseSheet(device, ticket), ChooseQuarterTurns(device, ticket)));
    std::erase_if(children,
                  [&](const Node& child) { return child.kind == size.kind && child.name == size.name; });
    children.push_back(std::move(size));
    return capabilities;
}
} // namespace host::ticketservice
