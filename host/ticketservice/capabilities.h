#pragma once

#include "host/tickets/ticketdocument.h"
#include "host/ticketservice/device.h"

namespace host::ticketservice
{
/// The device's print capabilities with PageImageableSize filled in for the media size and orientation that a
/// ticket asks for; a ticket without settings stands for the device's defaults.
///
/// A media size that the device does not offer by its name counts with the size that the ticket gives, if a
/// custom medium takes that, else as the default one. Sizes and origins are those of the page as it is read
/// (Print Schema, "PageImageableSize"): with a landscape orientation the sheet's width is the page's height.
tickets::Document DescribeFor(const Device& device, const tickets::Node& ticket);
} // namespace host::ticketservice
