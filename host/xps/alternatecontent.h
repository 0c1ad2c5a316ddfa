#pragma once

#include <optional>

#include "host/xml/reader.h"
#include "host/xps/xpsvocabulary.h"

namespace host::xps
{
/// Reads mc:AlternateContent away: its fallback applies, since each choice needs an extension that is unknown
/// here.
class AlternateContent
{
public:
    /// Whether a consumer skips the element. To be called for each one in document order.
    bool Hides(const xml::Element& element)
    {
        if (m_choiceDepth && element.depth > *m_choiceDepth)
        {
            return true;
        }
        m_choiceDepth.reset();
        const bool isWrapper = element.namespaceUri == kMarkupCompatibilityNamespace;
        if (isWrapper && element.localName == "Choice")
        {
            m_choiceDepth = element.depth;
        }
        return isWrapper;
    }

private:
    std::optional<int> m_choiceDepth;
};
} // namespace host::xps
