#include "bench/callcounts.h"

#include "base/logging/errors.h"
#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "pagevalidatefilter/pagevalidatexpsfilter.h"
#include "platform/msxml6.h"
#include "support/ticketplatform.h"

namespace bench
{
namespace
{
using base::exception::ThrowIfFailed;
using base::utility::ComPtr;
using base::utility::MakeCom;

/// Makes the objects of a class as the platform does, and counts them.
class CountingFactory final : public base::utility::ComObject<IClassFactory>
{
public:
    CountingFactory(REFCLSID classId, double& count) : m_count(count)
    {
        ThrowIfFailed(CoGetClassObject(
            classId, CLSCTX_INPROC_SERVER, nullptr, __uuidof(IClassFactory), m_pReal.ReceiveUntyped()));
    }
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override
    {
        ++m_count;
        return m_pReal->CreateInstance(outer, iid, object);
    }
    STDMETHODIMP LockServer(BOOL locks) override { return m_pReal->LockServer(locks); }

private:
    double& m_count;
    ComPtr<IClassFactory> m_pReal;
};

/// Lets what is made of a class be counted for as long as it lives.
class CreationCounter
{
public:
    CreationCounter(REFCLSID classId, double& count)
    {
        const auto factory = MakeCom<CountingFactory>(classId, count);
        ThrowIfFailed(CoRegisterClassObject(
            classId, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_registration));
    }
    CreationCounter(const CreationCounter&) = delete;
    CreationCounter& operator=(const CreationCounter&) = delete;
    ~CreationCounter() { CoRevokeClassObject(m_registration); }

private:
    DWORD m_registration = 0;
};

CallCounts CountCallsOfJob(PageKind kind, std::size_t pages)
{
    CallCounts counts;
    const CreationCounter documents(platform::kDomDocument60, counts["DOM documents loaded"]);
    support::TicketPlatform::Reset();
    support::TicketPlatform::SetGate([&](const std::string& name) {
        ++counts[name.substr(0, name.find(' '))];
        return S_OK;
    });
    const auto filter = MakeCom<pagevalidatefilter::PageValidateXpsFilter>();
    RunPageJob(*filter, {kind, pages, kSmallPage}, [&](const std::string& name) { ++counts[name]; });
    support::TicketPlatform::Reset();
    return counts;
}
} // namespace

CallCounts CountCallsOfPage(PageKind kind)
{
    constexpr std::size_t few = 2;
    constexpr std::size_t many = 12;
    const CallCounts start = CountCallsOfJob(kind, few);
    CallCounts perPage = CountCallsOfJob(kind, many);
    for (auto& [name, count] : perPage)
    {
        const auto known = start.find(name);
        count = (count - (known == start.end() ? 0.0 : known->second)) / (many - few);
    }
    std::erase_if(perPage, [](const auto& call) { return call.second == 0.0; });
    return perPage;
}
} // namespace bench
