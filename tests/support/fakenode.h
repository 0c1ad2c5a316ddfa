#pragma once

#include "base/utility/bstr.h"
#include "base/utility/comobject.h"
#include "platform/msxml6.h"

namespace tests
{
/// A node whose answers are set, for what a real document does not do. It counts its lives.
class FakeNode final : public base::utility::ComObject<IXMLDOMNode>
{
public:
    FakeNode() { ++s_alive; }

    STDMETHODIMP get_nodeName(BSTR* name) override
    {
        *name = SUCCEEDED(m_nameResult) ? base::utility::Bstr(L"node").Detach() : nullptr;
        return m_nameResult;
    }
    STDMETHODIMP get_attributes(IXMLDOMNamedNodeMap** attributes) override
    {
        *attributes = nullptr;
        return m_attributesResult;
    }
    /// The node is its own parent.
    STDMETHODIMP get_parentNode(IXMLDOMNode** parent) override
    {
        AddRef();
        *parent = this;
        return S_OK;
    }
    STDMETHODIMP removeChild(IXMLDOMNode*, IXMLDOMNode** removed) override
    {
        *removed = nullptr;
        return m_removeResult;
    }

    STDMETHODIMP put_nodeValue(VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP get_nodeValue(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_nodeType(DOMNodeType*) override { return E_NOTIMPL; }
    STDMETHODIMP get_childNodes(IXMLDOMNodeList**) override { return E_NOTIMPL; }
    STDMETHODIMP get_firstChild(IXMLDOMNode**) override { return E_NOTIMPL; }
    STDMETHODIMP get_lastChild(IXMLDOMNode**) override { return E_NOTIMPL; }
    STDMETHODIMP get_previousSibling(IXMLDOMNode**) override { return E_NOTIMPL; }
    STDMETHODIMP get_nextSibling(IXMLDOMNode**) override { return E_NOTIMPL; }
    STDMETHODIMP insertBefore(IXMLDOMNode*, VARIANT, IXMLDOMNode**) override { return E_NOTIMPL; }
    STDMETHODIMP replaceChild(IXMLDOMNode*, IXMLDOMNode*, IXMLDOMNode**) override { return E_NOTIMPL; }
    STDMETHODIMP appendChild(IXMLDOMNode*, IXMLDOMNode**) override { return E_NOTIMPL; }
    STDMETHODIMP hasChildNodes(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_ownerDocument(IXMLDOMDocument**) override { return E_NOTIMPL; }
    STDMETHODIMP cloneNode(VARIANT_BOOL, IXMLDOMNode**) override { return E_NOTIMPL; }
    STDMETHODIMP get_nodeTypeString(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_text(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_text(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_specified(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_definition(IXMLDOMNode**) override { return E_NOTIMPL; }
    STDMETHODIMP get_nodeTypedValue(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP put_nodeTypedValue(VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP get_dataType(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP put_dataType(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_xml(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP transformNode(IXMLDOMNode*, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP selectNodes(BSTR, IXMLDOMNodeList**) override { return E_NOTIMPL; }
    STDMETHODIMP selectSingleNode(BSTR, IXMLDOMNode**) override { return E_NOTIMPL; }
    STDMETHODIMP get_parsed(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_namespaceURI(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_prefix(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_baseName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP transformNodeToObject(IXMLDOMNode*, VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }

    HRESULT m_nameResult = S_OK;
    HRESULT m_attributesResult = S_FALSE;
    HRESULT m_removeResult = S_OK;
    static inline int s_alive = 0;

private:
    ~FakeNode() override { --s_alive; }
};
} // namespace tests
