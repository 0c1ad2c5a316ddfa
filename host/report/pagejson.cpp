#include "host/report/pagejson.h"

#include <nlohmann/json.hpp>

#include "host/report/pagewords.h"

namespace host::report
{
using base::xps::printschema::MediaSize;

namespace
{
Json ToJson(const std::optional<double>& value)
{
    return value ? Json(*value) : Json(nullptr);
}

Json ToJson(const xps::PageSize& size)
{
    return {{"width", ToJson(size.width)}, {"height", ToJson(size.height)}};
}

Json ToJson(MediaSize size)
{
    return {{"widthMicrometres", size.widthMicrometres}, {"heightMicrometres", size.heightMicrometres}};
}

Json ToJson(const tickets::SheetFacts& facts)
{
    Json media = {{"name", facts.mediaName}};
    media.update(ToJson(facts.media));
    return {{"orientation", facts.orientation}, {"media", media}, {"scaling", facts.scaling}};
}

Json ToJson(const tickets::TicketFacts& facts)
{
    Json object = ToJson(static_cast<const tickets::SheetFacts&>(facts));
    object["limits"] = {{"minimum", ToJson(facts.limits.minimum)}, {"maximum", ToJson(facts.limits.maximum)}};
    return object;
}

Json ToJson(const tickets::Replacement& replacement)
{
    return {{"wanted", replacement.wanted}, {"taken", replacement.taken}};
}

Json ToJson(const std::vector<tickets::Replacement>& replacements)
{
    Json array = Json::array();
    for (const tickets::Replacement& replacement : replacements)
    {
        array.push_back(ToJson(replacement));
    }
    return array;
}
} // namespace

std::string ToJsonLine(const Json& object)
{
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json TextOrNull(const std::string& text)
{
    return text.empty() ? Json(nullptr) : Json(text);
}

std::string FormatJson(const PageReport& page)
{
    return ToJsonLine(
        {{"page", page.number},
         {"decision", NameOf(Decide(page))},
         {"reason", ExplainDecision(page)},
         {"notes", NotesOn(page)},
         {"part", page.part},
         {"before", ToJson(page.before)},
         {"after", ToJson(page.after)},
         {"asked", ToJson(page.asked)},
         {"given", page.given ? ToJson(*page.given) : Json(nullptr)},
         {"replacements", ToJson(page.replacements)},
         {"givenReplacement", page.givenReplacement ? ToJson(*page.givenReplacement) : Json(nullptr)},
         {"markupFault", TextOrNull(page.markupFault)},
         {"oldTicket", TextOrNull(page.oldTicket)},
         {"newTicket", TextOrNull(page.newTicket)}});
}

std::string FormatSecondRunJson(const PageReport& page)
{
    const Json again = {{"page", page.number},
                        {"part", page.part},
                        {"isStable", IsJudged(page) ? Json(IsStable(page)) : Json(nullptr)},
                        {"decision", NameOf(Decide(page))},
                        {"reason", ExplainSecondRun(page)}};
    return ToJsonLine({{"again", again}});
}
} // namespace host::report
