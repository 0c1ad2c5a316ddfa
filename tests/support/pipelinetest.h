#pragma once

#include <optional>

#include <gtest/gtest.h>

#include "support/pipeline.h"
#include "support/tickettext.h"

namespace support
{
/// A test with its own pipeline, which also records the calls of the platform's print ticket functions. At
/// the end it checks that nothing is held, open or impersonated.
class PipelineTest : public ::testing::Test
{
protected:
    PipelineTest() { Renew(); }
    void TearDown() override
    {
        pipeline.reset();
        EXPECT_EQ(Pipeline::CountObjects(), 0);
        EXPECT_EQ(TicketPlatform::OpenProviders(), 0);
        EXPECT_FALSE(IsThreadImpersonating());
        TicketPlatform::Reset();
    }

    void Renew(const std::string& userTicket = Ticket(MediaFeature("ISOA4", 210000, 297000)))
    {
        TicketPlatform::Reset();
        pipeline.emplace(userTicket);
        TicketPlatform::SetGate([this](const std::string& name) { return pipeline->record.Enter(name); });
    }

    /// The names of the calls from the first of this name on, without those that read, write or seek a
    /// stream.
    std::string CallsFrom(const std::string& first) const
    {
        std::string calls;
        for (const std::string& name : pipeline->record.Names())
        {
            calls += !calls.empty() ? ", " + name : name == first ? name : "";
        }
        return calls;
    }

    std::optional<Pipeline> pipeline;
};
} // namespace support
