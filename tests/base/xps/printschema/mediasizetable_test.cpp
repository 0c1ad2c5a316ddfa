#include "base/xps/printschema/mediasizetable.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/thrown.h"

namespace base::xps::printschema
{
namespace
{
using support::MessageOf;

TEST(MediaSizeTable, RefusesANameOfAnotherEnumeration)
{
    MediaSizeTable table;
    EXPECT_EQ(MessageOf<std::logic_error>([&] { table.AddEntry(NamespaceId::Keywords, L"ISOA4", 9, {}); }),
              "Encounterd unexpect state.");
}
} // namespace
} // namespace base::xps::printschema
