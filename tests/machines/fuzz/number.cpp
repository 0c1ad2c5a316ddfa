#include <cmath>

#include "base/xps/page/markuptext.h"
#include "machines/fuzz/bytes.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace base::xps;
    const double value = ToNumber(fuzz::AsWideText(data, size));
    const std::wstring text = FormatNumber(value);
    fuzz::Require(!std::isnan(value));
    // Two decimals, as far as a double has them.
    const double again = ToNumber(text);
    fuzz::Require(std::isinf(value) || std::fabs(again - value) <= 0.005 + std::fabs(value) * 1e-15);
    return 0;
}
