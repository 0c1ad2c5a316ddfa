#include <gtest/gtest.h>

#include "platform/win32.h"

namespace
{
/// Initialises COM for the whole run of a suite that links this file.
class ComEnvironment : public testing::Environment
{
public:
    void SetUp() override { ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK); }
    void TearDown() override { CoUninitialize(); }
};

const testing::Environment* const kComEnvironment = testing::AddGlobalTestEnvironment(new ComEnvironment);
} // namespace
