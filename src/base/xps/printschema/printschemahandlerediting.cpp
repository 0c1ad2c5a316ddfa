#include "base/xps/printschema/printschemahandler.h"

#include "base/logging/errors.h"
#include "base/xps/printschema/document/dom.h"

namespace base::xps::printschema
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;

HRESULT PrintSchemaHandler::RemoveNode(IXMLDOMNode* node)
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(node);
        ComPtr<IXMLDOMNode> parent;
        ThrowIfFailed(node->get_parentNode(parent.Receive()));
        if (!parent)
        {
            return S_FALSE;
        }
        ComPtr<IXMLDOMNode> removed;
        ThrowIfFailed(parent->removeChild(node, removed.Receive()));
        return removed ? S_OK : E_FAIL;
    });
}

HRESULT PrintSchemaHandler::RemoveAllNodes(IXMLDOMNodeList* nodes)
{
    return AtDomBoundary([&] {
        RequirePointers(nodes);
        const long count = CountOf(nodes);
        for (long index = 0; index < count; ++index)
        {
            ThrowIfFailed(RemoveNode(ItemOf(nodes, index).Get()));
        }
    });
}

HRESULT PrintSchemaHandler::RemoveFeature(const wchar_t* localName, NamespaceId id) const
{
    return AtDomBoundary([&]() -> HRESULT {
        RequireText(localName);
        FeatureQueryBuilder builder(m_psfPrefix);
        ThrowIfFailed(builder.AddFeature(GetPrefix(id).Get(), localName));
        Bstr query;
        ThrowIfFailed(builder.GetQuery(query.Receive()));
        ComPtr<IXMLDOMNodeList> features;
        ThrowIfFailed(Document().selectNodes(query.Get(), features.Receive()));
        if (CountOf(features.Get()) == 0)
        {
            return S_FALSE;
        }
        ThrowIfFailed(RemoveAllNodes(features.Get()));
        ComPtr<IXMLDOMNodeList> parameterInits;
        ThrowIfFailed(SelectNodesByLocalName(L"ParameterInit", parameterInits.Receive()));
        ComPtr<IXMLDOMNodeList> parameterRefs;
        ThrowIfFailed(SelectNodesByLocalName(L"ParameterRef", parameterRefs.Receive()));
        ThrowIfFailed(RemoveOrphanParameterInits(parameterRefs.Get(), parameterInits.Get()));
        return S_FALSE;
    });
}

HRESULT PrintSchemaHandler::RemoveOrphanParameterInits(IXMLDOMNodeList* parameterRefs,
                                                       IXMLDOMNodeList* parameterInits)
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(parameterRefs, parameterInits);
        if (CountOf(parameterRefs) == 0)
        {
            return RemoveAllNodes(parameterInits);
        }
        // A set: a user's ticket may have thousands of both.
        const std::set<std::wstring> referredTo = NamesOf(parameterRefs);
        const long count = CountOf(parameterInits);
        for (long index = 0; index < count; ++index)
        {
            const ComPtr<IXMLDOMNode> parameterInit = ItemOf(parameterInits, index);
            if (!referredTo.contains(NameAttributeOf(parameterInit.Get())))
            {
                ThrowIfFailed(RemoveNode(parameterInit.Get()));
            }
        }
        return S_OK;
    });
}

HRESULT PrintSchemaHandler::AppendToElement(const wchar_t* localName, IXMLDOMNode* child) const
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(child);
        RequireText(localName);
        ComPtr<IXMLDOMNode> element;
        ThrowIfFailed(SelectSingleNode(FrameworkName(localName).c_str(), element.Receive()));
        if (!element)
        {
            return kNotFound;
        }
        AppendChild(element.Get(), child);
        return S_OK;
    });
}
} // namespace base::xps::printschema
