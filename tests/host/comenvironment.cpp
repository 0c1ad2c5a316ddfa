#include <gtest/gtest.h>

#include "platform/win32.h"

namespace host
{
namespace
{
/// COM for the whole run, as the program's main thread has it.
class ComEnvironment : public testing::Environment
{
public:
    void SetUp() override { ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK); }
    void TearDown() override { CoUninitialize(); }
};

[[maybe_unused]] const auto* const registered = testing::AddGlobalTestEnvironment(new ComEnvironment);
} // namespace
} // namespace host
