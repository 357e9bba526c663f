#include "checking/MaskComparison.h"

#include <string>

namespace checking {

namespace {

std::string Hexadecimal(uint32_t number) {
    std::string text;
    do {
        text.insert(text.begin(), "0123456789ABCDEF"[number % 16]);
        number /= 16;
    } while (number != 0);
    return "0x" + text;
}

}  // namespace

void CompareWithMask(uint32_t mask, const std::function<bool(const ServiceText&)>& isRegistered,
                     const std::function<void(Rule, std::initializer_list<std::string_view>)>& report) {
    for (const ServiceText& service : services) {
        const bool isThere = isRegistered(service);
        const bool isInMask = (mask & service.bit) != 0;
        if (isThere && !isInMask) {
            report(Rule::MaskMissing, {service.noun, service.bitName, Hexadecimal(mask)});
        } else if (!isThere && isInMask) {
            report(Rule::InterfaceMissing, {service.noun, service.bitName, service.set});
        }
    }
}

}  // namespace checking
