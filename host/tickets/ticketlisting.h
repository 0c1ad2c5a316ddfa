#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/xml/reader.h"

namespace host::tickets
{
/// A ticket that an effective ticket may get values from, and its name for people.
struct TicketLayer
{
    std::string name;
    std::string bytes;
};

/// A feature with its option and the properties of that, or a parameter.
struct ListedSetting
{
    std::string name;
    std::string value;
    std::vector<std::pair<std::string, std::string>> properties;
    /// Where the value comes from; empty if that was not asked.
    std::string origin;
};

struct TicketListing
{
    std::vector<ListedSetting> settings;
    /// What the prefixes of names stand for, but for those that the least specific layer has alike.
    std::vector<xml::PrefixBinding> prefixes;
};

/// Lists what a ticket selects. Throws xml::MarkupError for what is no print ticket.
///
/// With layers each setting names the first one, most specific first, that asks for the value; a value that
/// no layer asks for comes from the device.
TicketListing ListTicket(const std::string& ticket, const std::vector<TicketLayer>& layers = {});

/// A value as people read it: "215900 (215.9 mm)" for a length, by the end of its name.
std::string FormatValue(std::string_view name, const std::string& value);

/// As text, a line for each setting and for each prefix.
std::string FormatListing(const TicketListing& listing);
} // namespace host::tickets
