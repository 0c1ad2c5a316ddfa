#pragma once

#include <string>
#include <vector>

#include "machines/sweep/job.h"

namespace sweep
{
/// A row of docs/errors.md: failures that do not come out of the module with their own code.
struct Exception
{
    /// The name of the call; with a star at the end, its beginning.
    std::string call;
    /// The stage of the job; empty for any.
    std::string stage;
    /// Whether it applies only if the same call was made on the object before.
    bool isAgain = false;
    /// The HRESULTs that may come out; S_OK for success.
    std::vector<HRESULT> results;
    /// The row as text.
    std::string row;

    bool Holds(const Watch::Point& point) const;
};

const std::vector<Exception>& Exceptions();

/// The row that applies to a point; null for none.
const Exception* FindException(const Watch::Point& point);

bool IsOfMemory(const Watch::Point& point);

/// What is wrong with a run in which this point failed, compared with `good`, a run without a failure.
std::vector<std::string> Judge(const Outcome& outcome, const Outcome& good, const Watch::Point& point);
} // namespace sweep
