#pragma once

#include <map>
#include <string>
#include <vector>

#include "sweep/watch.h"

namespace sweep
{
/// What became of one job in a module that was loaded for it.
struct Outcome
{
    /// The first failure that the module answered with, and the method that did; S_OK for none.
    HRESULT result = S_OK;
    std::string method;
    /// Whether the pipeline was asked to shut down.
    bool isReported = false;
    /// Whether the ticket provider was closed by the end of the operation, not only with the filter.
    bool isProviderClosed = false;
    /// The parts that were sent, and what was written into new ones.
    std::vector<std::string> sent;
    std::vector<std::string> written;
    std::vector<Watch::Point> points;
    /// What was not as it has to be after any job, and in the one that followed it.
    std::vector<std::string> faults;
    /// What is still held when the module is gone, by kind.
    std::map<std::string, int> left;
};

struct Fault
{
    /// From 1; 0 for a job that nothing happens to.
    std::size_t point = 0;
    /// All memory from there on.
    bool isForGood = false;
    /// Every stream gives or takes a few bytes in one call, however many it is asked for.
    bool areStreamsShort = false;
};

/// Loads the module, runs a job that takes every way through it, then a small one, and unloads it.
Outcome RunJob(const Fault& fault);
} // namespace sweep
