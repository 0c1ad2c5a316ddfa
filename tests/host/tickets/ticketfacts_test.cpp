#include "host/tickets/ticketfacts.h"

#include <gtest/gtest.h>

#include "support/tickettext.h"

namespace host::tickets
{
namespace
{
TEST(TicketFactsReader, NamesTheFeaturesWhoseValueIsKeptFromThePartBefore)
{
    const std::string media = support::MediaFeature("ISOA4", 210000, 297000);
    const auto read = [](TicketFactsReader& reader, const std::string& features) {
        return reader.Read(LoadBytes(support::Ticket(features)));
    };
    TicketFactsReader reader;
    EXPECT_EQ(read(reader, media + support::Feature("PageOrientation", "Landscape")).keptFeatures,
              std::vector<std::string>());
    for (const std::string orientation : {"", "Sideways"})
    {
        const std::string feature =
            orientation.empty() ? "" : support::Feature("PageOrientation", orientation);
        const TicketFacts facts = read(reader, media + feature);
        EXPECT_EQ(facts.orientation, "Landscape") << orientation;
        EXPECT_EQ(facts.mediaName, "ISOA4");
        EXPECT_EQ(facts.keptFeatures, std::vector<std::string>{"PageOrientation"}) << orientation;
    }
}
} // namespace
} // namespace host::tickets
