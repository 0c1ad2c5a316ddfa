#pragma once

#include <string>
#include <vector>

#include "sweep/job.h"

namespace sweep
{
/// Failures that do not come out of the module with their own code, as a table of docs/errors.md lists them.
struct Exception
{
    /// The name of the call; with a star in the end, how it begins.
    std::string call;
    /// What the module is about; empty for anything.
    std::string stage;
    /// Not the first of its kind on the object.
    bool isAgain = false;
    /// What may come out; S_OK for nothing.
    std::vector<HRESULT> results;
    /// As the document has it.
    std::string row;

    bool Holds(const Watch::Point& point) const;
};

const std::vector<Exception>& Exceptions();

/// The one that holds for a point; null for none.
const Exception* FindException(const Watch::Point& point);

bool IsOfMemory(const Watch::Point& point);

/// What is wrong with a run in which this point failed; `good` is one in which none did.
std::vector<std::string> Judge(const Outcome& outcome, const Outcome& good, const Watch::Point& point);
} // namespace sweep
