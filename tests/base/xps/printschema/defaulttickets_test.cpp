#include "base/xps/printschema/defaulttickets.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/utility/comobject.h"
#include "base/utility/utf8.h"
#include "platform/printerextension.h"
#include "support/printstreams.h"
#include "support/ticketfacts.h"

namespace base::xps::printschema
{
namespace
{
using support::TicketFacts;
using utility::ComPtr;
using utility::MakeCom;

/// A driver's property bag with one number at most.
class DriverBag final : public utility::ComObject<IPrinterPropertyBag>, support::LifeCounted<DriverBag>
{
public:
    using LifeCounted<DriverBag>::Alive;

    explicit DriverBag(std::optional<LONG> tesselType) : m_tesselType(tesselType) {}

    STDMETHODIMP GetInt32(BSTR name, LONG* value) override
    {
        // What a failing call leaves behind is of no interest to anybody.
        *value = m_tesselType.value_or(76);
        const bool isKnown = utility::Bstr(L"QuellmarkTesselType").Compare(name) == HRESULT{VARCMP_EQ};
        return isKnown && m_tesselType ? S_OK : HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
    }

    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetBool(BSTR, BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP SetBool(BSTR, BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP SetInt32(BSTR, LONG) override { return E_NOTIMPL; }
    STDMETHODIMP GetString(BSTR, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP SetString(BSTR, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP GetBytes(BSTR, DWORD*, BYTE**) override { return E_NOTIMPL; }
    STDMETHODIMP SetBytes(BSTR, DWORD, BYTE*) override { return E_NOTIMPL; }
    STDMETHODIMP GetReadStream(BSTR, IStream**) override { return E_NOTIMPL; }
    STDMETHODIMP GetWriteStream(BSTR, IStream**) override { return E_NOTIMPL; }

private:
    std::optional<LONG> m_tesselType;
};

/// The pipeline's property bag with one value at most; VT_EMPTY for none. Under a type that is no object's
/// the object's address is but a number.
class PipelineBag final : public utility::ComObject<IPrintPipelinePropertyBag>
{
public:
    explicit PipelineBag(VARTYPE type = VT_EMPTY, IUnknown* object = nullptr) : m_type(type), m_object(object)
    {
    }

    STDMETHODIMP GetProperty(const wchar_t* name, VARIANT* value) override
    {
        if (m_type == VT_EMPTY || std::wstring(name) != L"DriverPropertyBag")
        {
            return HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
        }
        const bool isObject = m_type == VT_UNKNOWN || m_type == VT_DISPATCH;
        V_VT(value) = m_type;
        V_BYREF(value) = isObject ? ComPtr<IUnknown>(m_object).Detach() : m_object.Get();
        return S_OK;
    }
    STDMETHODIMP AddProperty(const wchar_t*, const VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP_(BOOL) DeleteProperty(const wchar_t*) override { return FALSE; }

private:
    VARTYPE m_type;
    ComPtr<IUnknown> m_object;
};

/// What every default ticket selects, as "feature=option property=value ...", one feature a line.
std::string Describe(const std::wstring& ticket)
{
    const auto document = support::LoadDocument(utility::ToUtf8(ticket));
    const TicketFacts facts(document.Get());
    std::string lines;
    const int features = facts.Count("/f:PrintTicket[@version='1']/f:Feature");
    for (int index = 1; index <= features; ++index)
    {
        const std::string feature = "/f:PrintTicket/f:Feature[" + std::to_string(index) + "]";
        lines += facts.Join(feature + "/@name") + "=" + facts.Join(feature + "/f:Option/@name");
        const int properties = facts.Count(feature + "/f:Option/f:Property");
        for (int property = 1; property <= properties; ++property)
        {
            const std::string path = feature + "/f:Option/f:Property[" + std::to_string(property) + "]";
            lines.append(" ")
                .append(facts.Join(path + "/@name"))
                .append("=")
                .append(facts.Join(path + "/f:Value[@*[name()='xsi:type']='xsd:integer']"));
        }
        lines += "\n";
    }
    return lines;
}

std::string Expected(const std::string& compress, const std::string& tesselType, const std::string& bits)
{
    return "psk:PageScaling=psk:FitApplicationMediaSizeToPageMediaSize\n"
           "ns0000:JobIcmMode=ns0000:QmAcct\n"
           "ns0000:JobCompress=ns0000:" +
           compress +
           "\n"
           "ns0000:PagePrintableMediaSize=ns0000:PrintableMediaSize ns0000:MinWidth=76200 "
           "ns0000:MinHeight=127000 ns0000:MaxWidth=215900 ns0000:MaxHeight=355600\n"
           "ns0000:JobDlutContentType=ns0000:DlutIndex ns0000:Image=1 ns0000:Text=1 ns0000:Graphics=1\n"
           "ns0000:JobTesselType=ns0000:" +
           tesselType + "\nns0000:JobTesselVersion=ns0000:Version1\nns0000:JobBitsPerPixel=ns0000:" + bits +
           "\n";
}

const std::string kType1 =
    Expected("Type4 ns0000:Threshold=24641536 ns0000:AlignementBytes=8", "Type1", "Bits8");
const std::string kType7 =
    Expected("Type2 ns0000:Threshold=52428800 ns0000:AlignementBytes=8", "Type7", "Bits8");
const std::string kTypeL =
    Expected("Type3 ns0000:Threshold=77594624 ns0000:AlignementBytes=256", "TypeL", "Bits2");

TEST(DefaultTickets, AreSelectedByTheDriversPageDescriptionType)
{
    const struct
    {
        std::optional<LONG> tesselType;
        const std::string& expected;
    } cases[] = {
        {1, kType1}, {7, kType7}, {76, kTypeL}, {2, kType7}, {0, kType7}, {-1, kType7}, {{}, kType7}};
    for (const auto& [tesselType, expected] : cases)
    {
        const auto driver = MakeCom<DriverBag>(tesselType);
        for (const VARTYPE type : {VT_UNKNOWN, VT_DISPATCH})
        {
            const auto bag = MakeCom<PipelineBag>(type, driver.Get());
            EXPECT_EQ(Describe(SelectDefaultPrintTicket(*bag)), expected) << tesselType.value_or(-2);
        }
    }
    EXPECT_EQ(DriverBag::Alive(), 0);
}

TEST(DefaultTickets, AreThatOfType7WithoutADriversPropertyBag)
{
    const auto other = MakeCom<PipelineBag>();
    const auto driver = MakeCom<DriverBag>(76);
    for (const auto& bag : {MakeCom<PipelineBag>(),
                            MakeCom<PipelineBag>(VT_UNKNOWN, nullptr),
                            MakeCom<PipelineBag>(VT_UNKNOWN, other.Get()),
                            MakeCom<PipelineBag>(VT_NULL, driver.Get()),
                            MakeCom<PipelineBag>(VT_I8, driver.Get()),
                            MakeCom<PipelineBag>(VT_BYREF, driver.Get())})
    {
        EXPECT_EQ(Describe(SelectDefaultPrintTicket(*bag)), kType7);
    }
}

TEST(DefaultTickets, DeclareTheNamespacesOfTheirNames)
{
    const auto document = support::LoadDocument(utility::ToUtf8(DefaultPrintTicketOf(7)));
    const TicketFacts facts(document.Get());
    EXPECT_EQ(facts.CountFeatures("http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords",
                                  "PageScaling"),
              1);
    EXPECT_EQ(facts.Count("//f:Feature[starts-with(@name, 'ns0000:')][contains(namespace::ns0000, "
                          "'/printing/2005/08/printticket')]"),
              7);
    EXPECT_EQ(facts.Count("/*[namespace::xsd='http://www.w3.org/2001/XMLSchema']"
                          "[namespace::xsi='http://www.w3.org/2001/XMLSchema-instance']"),
              1);
}
} // namespace
} // namespace base::xps::printschema
