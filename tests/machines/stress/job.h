#pragma once

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/pipeline/filtermodule.h"
#include "host/ticketservice/ticketservice.h"
#include "support/filtermodule.h"
#include "support/wholejob.h"

// Jobs of the built module over the offline ticket service, as the pipeline runs them.
namespace stress
{
/// So many of a thing when all of it is asked for, a sample otherwise.
inline int Amount(int all, int sample)
{
    return std::getenv("STRESS_ALL") != nullptr ? all : sample;
}

struct Module
{
    static Module& Get()
    {
        static Module module;
        return module;
    }

    /// Whether nothing is held, open or in use any more.
    bool IsIdle() const
    {
        return filters.CanUnload() && countOpenProviders() == 0 && support::Pipeline::CountObjects() == 0;
    }

    // Loaded first: the module's import binds to the ticket library that is there.
    host::pipeline::LoadedLibrary tickets{OFFLINE_TICKET_LIBRARY};
    host::pipeline::FilterModule filters{support::FilterModulePath()};
    host::pipeline::CallTrace trace;
    decltype(SetDeviceDescription)* const setDevice =
        tickets.Find<decltype(SetDeviceDescription)>("SetDeviceDescription");
    decltype(GetOpenProviderCount)* const countOpenProviders =
        tickets.Find<decltype(GetOpenProviderCount)>("GetOpenProviderCount");
    // The service has one device at a time for whoever opens a provider next.
    std::mutex deviceLock;
};

/// What one job differs in from another.
struct JobKind
{
    const char* sheet;
    const char* orientation;
    /// The driver's prefix is the whole process's: two names for the same are all that jobs at once can have.
    const wchar_t* prefix;
    LONG tesselType;
    /// The file that describes the device; null for the built-in one.
    const char* device;
};

/// Without the language that a page has to name: the SAX reader of Wine 8 keeps a block of 96 bytes for every
/// attribute with the prefix xml.
inline std::string PageOf(const std::string& content)
{
    return R"(<FixedPage xmlns="http://schemas.microsoft.com/xps/2005/06" Width="816")"
           R"( Height="1056"><Path Data=")" +
           content + R"("/></FixedPage>)";
}

inline std::string Oriented(const std::string& orientation)
{
    return support::Ticket(support::Feature("PageOrientation", orientation));
}

/// Asks for a sheet that is beyond what the printer takes.
inline std::string TooLarge(const std::string& orientation)
{
    return support::Ticket(support::MediaFeature("ISOA3", 297000, 420000) +
                           support::Feature("PageOrientation", orientation) +
                           support::Feature("PageScaling", "FitApplicationMediaSizeToPageMediaSize"));
}

/// One run of the filter over a whole job.
class Job
{
public:
    explicit Job(const JobKind& kind)
        : pipeline(support::Ticket(support::MediaFeature(kind.sheet))), m_device(kind.device)
    {
        pipeline.SetDriver(kind.prefix, kind.tesselType);
        support::AddWholeJob(
            pipeline, Oriented(kind.orientation), PageOf(std::string(kind.sheet) + kind.orientation));
        EXPECT_EQ(pipeline.Initialize(*filter), S_OK);
    }

    HRESULT Run()
    {
        std::ifstream file(m_device == nullptr ? "" : m_device, std::ios::binary);
        const std::string device(std::istreambuf_iterator<char>(file), {});
        // The first part is asked for after the provider has been opened.
        std::unique_lock lock(Module::Get().deviceLock);
        pipeline.provider->beforePart = [&] {
            if (lock.owns_lock())
            {
                lock.unlock();
            }
        };
        const char* const description = m_device == nullptr ? nullptr : device.data();
        EXPECT_EQ(Module::Get().setDevice(description, static_cast<ULONG>(device.size()), nullptr), S_OK);
        const HRESULT hr = filter->StartOperation();
        EXPECT_FALSE(support::IsThreadImpersonating());
        for (const auto& stream : pipeline.record.writeStreams)
        {
            EXPECT_EQ(stream->closes, 1);
        }
        return hr;
    }

    /// All that the pipeline saw of the job: the calls, and the bytes that were written.
    std::vector<std::string> Seen() const
    {
        std::vector<std::string> seen = pipeline.record.Names();
        for (const auto& stream : pipeline.record.writeStreams)
        {
            seen.push_back(stream->bytes);
        }
        return seen;
    }

    support::Pipeline pipeline;
    // Before the pipeline it goes.
    base::utility::ComPtr<IPrintPipelineFilter> filter =
        Module::Get().filters.CreateFilter(Module::Get().trace);

private:
    const char* m_device;
};
} // namespace stress
