#pragma once

#include <filesystem>
#include <string>

#include "host/job/filterjob.h"

// What a run of the filter came to, in words, each on one line.
namespace host::job
{
/// Throws opc::PackageError for what is wrong with the part that a failed filter stopped at, as far as the
/// host can tell: the filter answers with an HRESULT only.
void ThrowPackageFault(const std::filesystem::path& input, const FilterOutcome& outcome);

/// Where and with what the filter failed.
std::string DescribeFailure(const FilterOutcome& outcome);

/// What the filter has not let go of; empty for nothing.
std::string DescribeLeftover(const FilterOutcome& outcome);
} // namespace host::job
