#include "VsMsgbus.h"
#include "abi/module/Module.h"
#include "abi/module/Told.h"

namespace {

// For a bridge that has the module's own C++ library.
class DigestReader final : public VsKitMsgbus::INYEnforcePolicy {
public:
    int32_t GetLogLevel() override { return 0; }
    void Reserved() override {}
    void EnforcePolicy(const wchar_t* /*productId*/, IPolicyBag* bag) override {
        const std::string digest = bag->GetDigest("ABI1000");
        Told() << L"GetDigest gives " << std::wstring(digest.begin(), digest.end()).c_str();
        const std::string none = bag->GetDigest(nullptr);
        Told() << L"GetDigest gives " << static_cast<int32_t>(none.size()) << L" characters for null";
    }
};

constinit DigestReader reader;

}  // namespace

bool ModuleOfferDigestReader(const wchar_t* productId) {
    return VsKitMsgbusSetEnforcePolicy(productId, &reader, nullptr);
}
