#include "host/report/html/pagedrawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "host/report/html/htmltext.h"
#include "host/xml/text.h"

namespace host::report::html
{
using xps::ContentTransform;
using xps::PageSize;

namespace
{
std::string Attribute(const char* name, double value)
{
    return std::string(" ") + name + "=\"" + xml::FormatNumber(value) + "\"";
}

std::string DrawBox(const char* what, const MillimetreBox& box)
{
    return std::string("<rect class=\"") + what + "\"" + Attribute("x", box.left) + Attribute("y", box.top) +
           Attribute("width", box.width) + Attribute("height", box.height) + "/>";
}

std::string Point(double x, double y)
{
    return xml::FormatNumber(x) + "," + xml::FormatNumber(y);
}

/// A symbol for the content of a page, in the page's pixels: its top left corner, an arrow that points up,
/// and lines of text below it.
std::string DrawContent(double width, double height)
{
    const double corner = 0.16 * std::min(width, height);
    const double middle = width / 2;
    const double head = 0.09 * std::min(width, height);
    std::string content = "<path class=\"corner\" d=\"M0,0H" + xml::FormatNumber(corner) + "L0," +
                          xml::FormatNumber(corner) + "z\"/>";
    content += "<path class=\"arrow\" d=\"M" + Point(middle, 0.5 * height) + "V" +
               xml::FormatNumber(0.16 * height) + "M" + Point(middle - head, 0.16 * height + head) + "L" +
               Point(middle, 0.16 * height) + "L" + Point(middle + head, 0.16 * height + head) +
               "\"/><path class=\"lines\" d=\"";
    for (const auto& [top, end] : {std::pair{0.62, 0.85}, std::pair{0.72, 0.85}, std::pair{0.82, 0.55}})
    {
        content += "M" + Point(0.15 * width, top * height) + "H" + xml::FormatNumber(end * width);
    }
    return content + "\"/>";
}

/// `content` is the size that the content was made for, `box` where the page comes to lie.
std::string DrawPageBox(const MillimetreBox& box,
                        const PageSize& page,
                        const PageSize& content,
                        const std::optional<ContentTransform>& transform)
{
    std::string drawing = DrawBox("page-box", box);
    const auto isDrawn = [](const std::optional<double>& length) { return length && std::isfinite(*length); };
    if (!isDrawn(content.width) || !isDrawn(content.height))
    {
        return drawing;
    }
    const double scaleX = box.width / *page.width;
    const double scaleY = box.height / *page.height;
    // Six decimals: a pixel is 0.264583 mm.
    drawing += "<g transform=\"translate(" + Point(box.left, box.top) + ") scale(" + std::to_string(scaleX) +
               "," + std::to_string(scaleY) + ")" +
               (transform ? " matrix(" + FormatMatrix(*transform) + ")" : "") + "\">";
    return drawing + DrawContent(*content.width, *content.height) + "</g>";
}

std::string DrawText(double textSize, const std::string& place, const std::string& text)
{
    return "<text" + Attribute("font-size", textSize) + place + ">" + text + "</text>";
}

/// The lengths at the edges; in one line if two would overlap.
std::string DrawLengths(const MillimetreBox& sheet, double textSize)
{
    const double gap = textSize / 2;
    const std::string width = xml::FormatNumber(sheet.width) + " mm";
    const std::string height = xml::FormatNumber(sheet.height) + " mm";
    const double middle = sheet.height / 2;
    // A generous width of a character, in sizes of the text.
    constexpr double characterWidth = 0.6;
    const double textLength =
        characterWidth * textSize * static_cast<double>(std::max(width.size(), height.size()));
    if (std::max(sheet.width, sheet.height) < textLength)
    {
        return DrawText(textSize,
                        " class=\"both\" x=\"0\"" + Attribute("y", -gap),
                        xml::FormatNumber(sheet.width) + " &#215; " + height);
    }
    return DrawText(textSize, Attribute("x", sheet.width / 2) + Attribute("y", -gap), width) +
           DrawText(textSize,
                    Attribute("x", -gap) + Attribute("y", middle) + " transform=\"rotate(-90 " +
                        xml::FormatNumber(-gap) + " " + xml::FormatNumber(middle) + ")\"",
                    height);
}

std::string DescribeSheet(const PageView& view)
{
    return "sheet " + xml::FormatNumber(view.sheet.width) + " by " + xml::FormatNumber(view.sheet.height) +
           " mm";
}

std::string DescribePage(const PageView& view)
{
    return view.page ? ", page " + xml::FormatNumber(view.page->width) + " by " +
                           xml::FormatNumber(view.page->height) + " mm"
                     : std::string(", page of unknown size");
}

/// The box of all that a view shows, without limits that are so large that the sheet would be too small to
/// see.
MillimetreBox FindExtent(const PageView& view)
{
    const MillimetreBox extent = view.page ? Enclose(view.sheet, *view.page) : view.sheet;
    constexpr double farAway = 2.0;
    const double reach = farAway * std::max(extent.width, extent.height);
    return std::max(view.largest.width, view.largest.height) <= reach ? Enclose(extent, view.largest)
                                                                      : extent;
}

/// Draws both views of a page to one scale.
class Canvas
{
public:
    Canvas(const PageReport& page, const MillimetreBox& before, const MillimetreBox& after) : m_page(page)
    {
        // Neither wider than the figure nor much higher.
        constexpr double mostHeight = 1.5;
        m_fullWidth =
            std::max({before.width, after.width, before.height / mostHeight, after.height / mostHeight});
        constexpr double textShare = 0.06;
        m_textSize = std::max(1.0, textShare * m_fullWidth);
        m_fullWidth += Margins();
    }

    std::string Draw(const PageView& view,
                     const char* when,
                     const PageSize& size,
                     const std::optional<ContentTransform>& transform,
                     const std::string& wayUp) const
    {
        const std::string id = "drawing-" + std::to_string(m_page.number) + "-" + when;
        std::string drawing = Open(FindExtent(view)) + " role=\"img\" aria-labelledby=\"" + id +
                              "\"><title id=\"" + id + "\">Page " + std::to_string(m_page.number) + " " +
                              when + ": " + DescribeSheet(view) + DescribePage(view) + "; " + wayUp +
                              "</title>";
        drawing += DrawBox("sheet", view.sheet);
        if (view.page)
        {
            drawing += DrawPageBox(*view.page, size, m_page.before, transform);
        }
        drawing += view.imageable ? DrawBox("imageable", *view.imageable) : "";
        drawing += DrawBox("largest", view.largest) + DrawBox("smallest", view.smallest);
        return drawing + DrawLengths(view.sheet, m_textSize) + "</svg>";
    }

private:
    /// Two lines of text left and above, half of one at the other edges.
    double Margins() const { return 2.5 * m_textSize; }

    std::string Open(const MillimetreBox& extent) const
    {
        const double width = extent.width + Margins();
        const double margin = 2.0 * m_textSize;
        constexpr double percent = 100.0;
        return "<svg width=\"" + xml::FormatNumber(percent * width / m_fullWidth) + "%\" viewBox=\"" +
               xml::FormatNumber(extent.left - margin) + " " + xml::FormatNumber(extent.top - margin) + " " +
               xml::FormatNumber(width) + " " + xml::FormatNumber(extent.height + Margins()) + "\"";
    }

    const PageReport& m_page;
    double m_fullWidth = 0.0;
    double m_textSize = 0.0;
};

/// The direction of the content's top edge.
std::string DescribeWayUp(const ContentTransform& transform)
{
    // The upward direction is (0, -1).
    const double x = -transform[2];
    const double y = -transform[3];
    if (std::abs(x) > std::abs(y))
    {
        return x < 0 ? "to the left" : "to the right";
    }
    return y <= 0 ? "up" : "down";
}

std::string NameTurn(const ContentTransform& transform)
{
    constexpr std::pair<std::array<double, 4>, const char*> turns[] = {
        {{0, -1, 1, 0}, "a quarter turn anticlockwise (270 degrees clockwise): "},
        {{0, 1, -1, 0}, "a quarter turn clockwise: "},
        {{-1, 0, 0, -1}, "a half turn: "}};
    const auto turn = std::find_if(std::begin(turns), std::end(turns), [&](const auto& each) {
        return std::equal(each.first.begin(), each.first.end(), transform.begin());
    });
    return turn == std::end(turns) ? "" : turn->second;
}

/// "816 - x", "0.5 y": one coordinate of the result.
std::string FormatCoordinate(double x, double y, double shift)
{
    std::string text;
    for (const auto& [factor, variable] : {std::pair{shift, ""}, std::pair{x, "x"}, std::pair{y, "y"}})
    {
        if (factor == 0.0)
        {
            continue;
        }
        text += text.empty() ? (factor < 0 ? "-" : "") : factor < 0 ? " - " : " + ";
        const double size = std::abs(factor);
        const bool isPlain = *variable != '\0' && size == 1.0;
        text += isPlain ? variable : xml::FormatNumber(size) + (*variable == '\0' ? "" : " ") + variable;
    }
    return text.empty() ? "0" : text;
}
} // namespace

PageDrawings DrawPage(const PageReport& page)
{
    const PageView before = ViewBefore(page);
    const PageView after = ViewAfter(page);
    const Canvas canvas(page, FindExtent(before), FindExtent(after));
    const std::string up = "the content's arrow points up";
    PageDrawings drawings;
    drawings.before = canvas.Draw(before, "before", page.before, std::nullopt, up);
    if (Decide(page) != Decision::Passed)
    {
        const auto transform = page.details ? page.details->transform : std::nullopt;
        drawings.after =
            canvas.Draw(after,
                        "after",
                        page.after,
                        transform,
                        transform ? "the content's arrow points " + DescribeWayUp(*transform) : up);
    }
    return drawings;
}

std::string FormatMatrix(const ContentTransform& transform)
{
    std::string text;
    for (const double element : transform)
    {
        text += (text.empty() ? "" : ", ") + xml::FormatNumber(element);
    }
    return text;
}

std::string DescribeTransform(const ContentTransform& transform)
{
    const auto& [m11, m12, m21, m22, dx, dy] = transform;
    return NameTurn(transform) + "(x, y) comes to (" + FormatCoordinate(m11, m21, dx) + ", " +
           FormatCoordinate(m12, m22, dy) + ") px; the content's arrow then points " +
           DescribeWayUp(transform);
}
} // namespace host::report::html
