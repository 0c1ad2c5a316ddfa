#pragma once

#include <map>
#include <string>
#include <vector>

#include "machines/sweep/watch.h"

namespace sweep
{
/// The outcome of one job, in a module that was loaded for it.
struct Outcome
{
    /// The first failing HRESULT that a method of the module returned, and the method; S_OK for none.
    HRESULT result = S_OK;
    std::string method;
    /// Whether the filter requested a shutdown.
    bool isReported = false;
    /// Whether the ticket provider was closed when the operation ended, before the filter was released.
    bool isProviderClosed = false;
    /// The parts that were sent, and the contents of new parts.
    std::vector<std::string> sent;
    std::vector<std::string> written;
    std::vector<Watch::Point> points;
    /// Errors in the state after the job, and in the job after it.
    std::vector<std::string> faults;
    /// The resources that are still held after the module is unloaded, by kind.
    std::map<std::string, int> left;
};

struct Fault
{
    /// From 1; 0 for a job without a failure.
    std::size_t point = 0;
    /// Whether every allocation after the failing point fails too.
    bool isForGood = false;
    /// Whether streams read and write at most a few bytes in one call.
    bool areStreamsShort = false;
};

/// Loads the module, runs a job that uses every path through it, then a small job, and unloads the module.
Outcome RunJob(const Fault& fault);
} // namespace sweep
