#include "host/ticketservice/device.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "host/tickets/parameters.h"
#include "host/xml/text.h"

namespace host::ticketservice
{
namespace
{
tickets::ExpandedName DeviceName(std::string_view local)
{
    return {std::string(kDeviceNamespace), std::string(local)};
}

[[noreturn]] void Refuse(const tickets::ExpandedName& subject, const std::string& fault)
{
    throw xml::MarkupError(subject.local + ": " + fault);
}

/// The integer that an element's property of a name holds; none without such a property.
std::optional<int> FindIntegerProperty(const tickets::Node& parent, const tickets::ExpandedName& name)
{
    const tickets::Node* const property = tickets::FindChild(parent, tickets::Kind::Property, name);
    if (property == nullptr)
    {
        return std::nullopt;
    }
    const std::optional<int> number = xml::ParseInteger(tickets::FindText(*property).value_or(""));
    if (!number)
    {
        Refuse(name, "the value is not an integer");
    }
    return number;
}

std::optional<Margins> FindMargins(const tickets::Node& parent)
{
    const tickets::Node* const margins =
        tickets::FindChild(parent, tickets::Kind::Property, DeviceName("Margins"));
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

Parameter::Type ReadType(const tickets::Node& definition)
{
    const tickets::Node* const property =
        tickets::FindChild(definition, tickets::Kind::Property, tickets::Framework("DataType"));
    const tickets::Node* const value =
        property == nullptr ? nullptr : tickets::FindChild(*property, tickets::Kind::Value);
    if (value == nullptr)
    {
        Refuse(definition.name, "the parameter has no DataType");
    }
    const auto is = [&](std::string_view type) {
        return value->content == tickets::Content(tickets::ExpandedName{
                                     std::string(tickets::kSchemaNamespace), std::string(type)});
    };
    if (is("integer"))
    {
        return Parameter::Type::Integer;
    }
    return is("decimal") ? Parameter::Type::Decimal : Parameter::Type::Other;
}

std::optional<Limit> FindLimit(const tickets::Node& definition, std::string_view name)
{
    const tickets::Node* const property =
        tickets::FindChild(definition, tickets::Kind::Property, tickets::Framework(name));
    if (property == nullptr)
    {
        return std::nullopt;
    }
    std::string text = tickets::FindText(*property).value_or("");
    const std::optional<double> number = xml::ParseDecimal(text);
    if (!number)
    {
        Refuse(definition.name, std::string(name) + " is not a number");
    }
    return Limit{*number, std::move(text)};
}

Parameter ReadParameter(const tickets::Node& definition)
{
    Parameter parameter{.name = definition.name, .type = ReadType(definition)};
    if (parameter.type != Parameter::Type::Other)
    {
        parameter.minimum = FindLimit(definition, "MinValue");
        parameter.maximum = FindLimit(definition, "MaxValue");
    }
    const bool isEmptyRange =
        parameter.minimum && parameter.maximum && parameter.minimum->number > parameter.maximum->number;
    if (isEmptyRange)
    {
        Refuse(parameter.name, "MinValue is above MaxValue");
    }
    const tickets::Node* const property =
        tickets::FindChild(definition, tickets::Kind::Property, tickets::Framework("DefaultValue"));
    const tickets::Node* const value =
        property == nullptr ? nullptr : tickets::FindChild(*property, tickets::Kind::Value);
    if (value == nullptr)
    {
        Refuse(parameter.name, "the parameter has no DefaultValue");
    }
    parameter.defaultValue = *value;
    if (parameter.type != Parameter::Type::Other)
    {
        const std::optional<double> number = parameter.ReadNumber(tickets::FindText(*property).value_or(""));
        if (!number || parameter.FindBrokenLimit(*number) != nullptr)
        {
            Refuse(parameter.name, "DefaultValue is not a number within the limits");
        }
    }
    return parameter;
}

/// Checks that a feature and those in it have a default option.
void RequireOptions(const tickets::Node& feature)
{
    if (tickets::FindChild(feature, tickets::Kind::Option) == nullptr)
    {
        Refuse(feature.name, "the feature has no option");
    }
    GetDefaultOption(feature);
    for (const tickets::Node& child : feature.children)
    {
        if (child.kind == tickets::Kind::Feature)
        {
            RequireOptions(child);
        }
    }
}

template <typename Item>
const Item* FindNamed(const std::vector<Item>& items, const tickets::ExpandedName& name)
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

Device::Device(tickets::Document capabilities) : m_capabilities(std::move(capabilities))
{
    for (const tickets::Node& child : m_capabilities.root.children)
    {
        if (child.kind == tickets::Kind::Feature)
        {
            RequireOptions(child);
        }
    }
    ReadParameters();
    ReadMedia();
}

const tickets::Node* Device::FindFeature(const tickets::ExpandedName& name) const
{
    return tickets::FindChild(m_capabilities.root, tickets::Kind::Feature, name);
}

const Medium* Device::FindMedium(const tickets::ExpandedName& option) const
{
    return FindNamed(m_media, option);
}

const Parameter* Device::FindParameter(const tickets::ExpandedName& name) const
{
    return FindNamed(m_parameters, name);
}

const Medium& Device::GetDefaultMedium() const
{
    return *FindMedium(GetDefaultOption(*FindFeature(tickets::Keyword("PageMediaSize"))).name);
}

void Device::ReadParameters()
{
    for (const tickets::Node& child : m_capabilities.root.children)
    {
        if (child.kind == tickets::Kind::ParameterDef)
        {
            m_parameters.push_back(ReadParameter(child));
        }
    }
    for (const tickets::ExpandedName& reference : tickets::ReferencesIn(m_capabilities.root))
    {
        if (FindParameter(reference) == nullptr)
        {
            Refuse(reference, "an option refers to this parameter, but it has no ParameterDef");
        }
    }
}

void Device::ReadMedia()
{
    const tickets::Node* const feature = FindFeature(tickets::Keyword("PageMediaSize"));
    if (feature == nullptr)
    {
        throw xml::MarkupError("the description names no PageMediaSize");
    }
    const Margins deviceMargins = FindMargins(m_capabilities.root).value_or(Margins{});
    for (const tickets::Node& child : feature->children)
    {
        if (child.kind == tickets::Kind::Option)
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

Medium Device::ReadMedium(const tickets::Node& option, const Margins& deviceMargins) const
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

Device::Range Device::ReadEdge(const tickets::Node& option, std::string_view edge) const
{
    Range range;
    const tickets::Node* const property = tickets::FindEdge(option, edge);
    const tickets::Node* const reference =
        property == nullptr ? nullptr : tickets::FindChild(*property, tickets::Kind::ParameterRef);
    if (reference != nullptr)
    {
        const Parameter& parameter = *FindParameter(reference->name);
        const auto read = [](const std::optional<Limit>& limit) {
            return limit ? xml::ParseInteger(limit->text).value_or(0) : 0;
        };
        range = {read(parameter.minimum), read(parameter.maximum), true};
    }
    else if (property != nullptr)
    {
        const int length = xml::ParseInteger(tickets::FindText(*property).value_or("")).value_or(0);
        range = {length, length, false};
    }
    if (range.shortest <= 0 || range.longest <= 0)
    {
        Refuse(option.name, "the medium has no width and height, or a custom one no limits for them");
    }
    return range;
}

const tickets::Node& GetDefaultOption(const tickets::Node& feature)
{
    const tickets::Node* const property =
        tickets::FindChild(feature, tickets::Kind::Property, DeviceName("DefaultOption"));
    if (property == nullptr)
    {
        return *tickets::FindChild(feature, tickets::Kind::Option);
    }
    const tickets::Node* const value = tickets::FindChild(*property, tickets::Kind::Value);
    const tickets::ExpandedName* const name =
        value == nullptr ? nullptr : std::get_if<tickets::ExpandedName>(&value->content);
    const tickets::Node* const option =
        name == nullptr ? nullptr : tickets::FindChild(feature, tickets::Kind::Option, *name);
    if (option == nullptr)
    {
        Refuse(feature.name, "DefaultOption is not the QName of one of the feature's options");
    }
    return *option;
}
} // namespace host::ticketservice
