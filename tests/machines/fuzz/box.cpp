#include <cmath>
#include <stdexcept>

#include "base/xps/page/pagebox.h"
#include "base/xps/page/pagetransform.h"
#include "machines/fuzz/bytes.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace base::xps;
    try
    {
        const PageBox box = ParseBox(fuzz::AsWideText(data, size));
        GdiMatrix matrix;
        ComputePageTransform(box, 270, 1, matrix);
        FormatRenderTransform(matrix);
        const PageBox turned = TransformBox(box, matrix);
        fuzz::Require(std::isnan(turned.Width()) || turned.Width() >= 0);
        FormatBox(turned.Left, turned.Top, turned.Width(), turned.Height());
    }
    catch (const std::invalid_argument&)
    {
    }
    return 0;
}
