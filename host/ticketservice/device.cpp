#include "host/ticketservice/device.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "host/tickets/parameters.h"
#include "host/tickets/ticketdocument.h"
#include "host/xml/text.h"

namespace host::ticketservice
{
namespace
{
ExpandedName DeviceName(std::string_view local)
{
    return {std::string(kDeviceNamespace), std::string(local)};
}

[[noreturn]] void Refuse(const ExpandedName& subject, const std::string& fault)
{
    throw xml::MarkupError(subject.local + ": " + fault);
}

/// The integer that an element's property of a name holds; none without such a property.
std::optional<int> FindIntegerProperty(const Node& parent, const ExpandedName& name)
{
    const Node* const property = FindChild(&parent, Kind::Property, name);
    if (property == nullptr)
    {
        return std::nullopt;
    }
    const std::optional<int> number = xml::ParseInteger(FindText(property).value_or(""));
    if (!number)
    {
        Refuse(name, "the value is not an integer");
    }
    return number;
}

std::optional<Margins> FindMargins(const Node& parent)
{
    const Node* const margins = FindChild(&parent, Kind::Property, DeviceName("Margins"));
    if (margins == nullptr)
    {
        return std::nullopt;
    }
    const auto read = [&](std::string_view edge) {
        const int width = FindIntegerProperty(*margins, DeviceName(edge)).value_or(-1);
        if (width < 0)
        {
            Refuse(DeviceName(edge), "a margin is missing or negative");
        }
        return width;
    };
    return Margins{read("Left"), read("Top"), read("Right"), read("Bottom")};
}

Parameter::Type ReadType(const Node& definition)
{
    const Node* const value = FindPropertyValue(definition, Framework("DataType"));
    if (value == nullptr)
    {
        Refuse(definition.name, "the parameter has no DataType");
    }
    const auto is = [&](std::string_view type) {
        return value->content ==
               Content(ExpandedName{std::string(tickets::kSchemaNamespace), std::string(type)});
    };
    if (is("integer"))
    {
        return Parameter::Type::Integer;
    }
    return is("decimal") ? Parameter::Type::Decimal : Parameter::Type::Other;
}

std::optional<Limit> FindLimit(const Node& definition, std::string_view name)
{
    const Node* const property = FindChild(&definition, Kind::Property, Framework(name));
    if (property == nullptr)
    {
        return std::nullopt;
    }
    std::string text = FindText(property).value_or("");
    const std::optional<double> number = xml::ParseDecimal(text);
    if (!number)
    {
        Refuse(definition.name, std::string(name) + " is not a number");
    }
    return Limit{*number, std::move(text)};
}

Parameter ReadParameter(const Node& definition)
{
    Parameter parameter{.name = definition.name, .type = ReadType(definition)};
    if (parameter.type != Parameter::Type::Other)
    {
        parameter.minimum = FindLimit(definition, "MinValue");
        parameter.maximum = FindLimit(definition, "MaxValue");
    }
    if (parameter.minimum && parameter.maximum && parameter.minimum->number > parameter.maximum->number)
    {
        Refuse(parameter.name, "MinValue is above MaxValue");
    }
    const Node* const value = FindPropertyValue(definition, Framework("DefaultValue"));
    if (value == nullptr)
    {
        Refuse(parameter.name, "the parameter has no DefaultValue");
    }
    parameter.defaultValue = *value;
    if (parameter.type != Parameter::Type::Other)
    {
        const auto* const text = std::get_if<std::string>(&value->content);
        const auto number = text == nullptr ? std::nullopt : parameter.ReadNumber(*text);
        if (!number || parameter.FindBrokenLimit(*number) != nullptr)
        {
            Refuse(parameter.name, "DefaultValue is not a number within the limits");
        }
    }
    return parameter;
}

/// Checks that a feature and those in it have a default option.
void RequireOptions(const Node& feature)
{
    if (FindChild(&feature, Kind::Option) == nullptr)
    {
        Refuse(feature.name, "the feature has no option");
    }
    GetDefaultOption(feature);
    for (const Node& child : feature.children)
    {
        if (child.kind == Kind::Feature)
        {
            RequireOptions(child);
        }
    }
}

template <typename Item>
const Item* FindNamed(const std::vector<Item>& items, const ExpandedName& name)
{
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const Item& each) { return each.name == name; });
    return found == items.end() ? nullptr : &*found;
}
} // namespace

bool Medium::Takes(MediaSize size) const
{
    return size.widthMicrometres >= smallest.widthMicrometres &&
           size.heightMicrometres >= smallest.heightMicrometres &&
           size.widthMicrometres <= largest.widthMicrometres &&
           size.heightMicrometres <= largest.heightMicrometres;
}

std::optional<double> Parameter::ReadNumber(const std::string& text) const
{
    const bool isWhole = text.find('.') == std::string::npos;
    return type == Type::Decimal || isWhole ? xml::ParseDecimal(text) : std::nullopt;
}

const Limit* Parameter::FindBrokenLimit(double value) const
{
    if (minimum && value < minimum->number)
    {
        return &*minimum;
    }
    return maximum && value > maximum->number ? &*maximum : nullptr;
}

Device::Device(std::string_view description)
    : m_capabilities(tickets::ReadDocument(description, Kind::PrintCapabilities))
{
    for (const Node& child : m_capabilities.root.children)
    {
        if (child.kind == Kind::Feature)
        {
            RequireOptions(child);
        }
    }
    ReadParameters();
    ReadMedia();
}

const Node* Device::FindFeature(const ExpandedName& name) const
{
    return FindChild(&m_capabilities.root, Kind::Feature, name);
}

const Medium* Device::FindMedium(const ExpandedName& option) const
{
    return FindNamed(m_media, option);
}

const Parameter* Device::FindParameter(const ExpandedName& name) const
{
    return FindNamed(m_parameters, name);
}

const Medium& Device::GetDefaultMedium() const
{
    return *FindMedium(GetDefaultOption(*FindFeature(Keyword("PageMediaSize"))).name);
}

void Device::ReadParameters()
{
    for (const Node& child : m_capabilities.root.children)
    {
        if (child.kind == Kind::ParameterDef)
        {
            m_parameters.push_back(ReadParameter(child));
        }
    }
    for (const ExpandedName& reference : tickets::ReferencesIn(m_capabilities.root))
    {
        if (FindParameter(reference) == nullptr)
        {
            Refuse(reference, "an option refers to this parameter, but it has no ParameterDef");
        }
    }
}

void Device::ReadMedia()
{
    const Node* const feature = FindFeature(Keyword("PageMediaSize"));
    if (feature == nullptr)
    {
        throw xml::MarkupError("the description names no PageMediaSize");
    }
    const Margins deviceMargins = FindMargins(m_capabilities.root).value_or(Margins{});
    for (const Node& child : feature->children)
    {
        if (child.kind == Kind::Option)
        {
            m_media.push_back(ReadMedium(child, deviceMargins));
        }
    }
    const Medium& preferred = GetDefaultMedium();
    if (preferred.isCustom)
    {
        Refuse(preferred.name, "a custom medium cannot be the default");
    }
}

Medium Device::ReadMedium(const Node& option, const Margins& deviceMargins) const
{
    const Range width = ReadEdge(option, "Width");
    const Range height = ReadEdge(option, "Height");
    const Margins margins = FindMargins(option).value_or(deviceMargins);
    // In 64 bits, so that no description can make the sums overflow.
    const auto isCovered = [](int length, std::int64_t before, std::int64_t after) {
        return length <= before + after;
    };
    if (isCovered(width.shortest, margins.leftMicrometres, margins.rightMicrometres) ||
        isCovered(height.shortest, margins.topMicrometres, margins.bottomMicrometres))
    {
        Refuse(option.name, "the margins leave nothing to print on");
    }
    return {.name = option.name,
            .isCustom = width.isCustom || height.isCustom,
            .smallest = {width.shortest, height.shortest},
            .largest = {width.longest, height.longest},
            .margins = margins};
}

Device::Range Device::ReadEdge(const Node& option, std::string_view edge) const
{
    Range range;
    const Node* const property = tickets::FindEdge(option, edge);
    const Node* const reference = FindChild(property, Kind::ParameterRef);
    if (reference != nullptr)
    {
        const Parameter& parameter = *FindParameter(reference->name);
        const auto read = [](const std::optional<Limit>& limit) {
            return limit ? xml::ParseInteger(limit->text).value_or(0) : 0;
        };
        range = {read(parameter.minimum), read(parameter.maximum), true};
    }
    else
    {
        const int length = xml::ParseInteger(FindText(property).value_or("")).value_or(0);
        range = {length, length, false};
    }
    if (range.shortest <= 0 || range.longest <= 0)
    {
        Refuse(option.name, "the medium has no width and height, or a custom one no limits for them");
    }
    return range;
}

const Node& GetDefaultOption(const Node& feature)
{
    const Node* const property = FindChild(&feature, Kind::Property, DeviceName("DefaultOption"));
    if (property == nullptr)
    {
        return *FindChild(&feature, Kind::Option);
    }
    const Node* const value = FindChild(property, Kind::Value);
    const auto* const name = value == nullptr ? nullptr : std::get_if<ExpandedName>(&value->content);
    const Node* const option = name == nullptr ? nullptr : FindChild(&feature, Kind::Option, *name);
    if (option == nullptr)
    {
        Refuse(feature.name, "DefaultOption is not the QName of one of the feature's options");
    }
    return *option;
}
} // namespace host::ticketservice
