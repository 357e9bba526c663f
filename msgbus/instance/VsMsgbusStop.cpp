// How the bridge instance lets go of its services.
#include "base/Boundary.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/instance/VsMsgbus.h"
#include "values/AgentException.h"
#include "values/UnloggedText.h"

using namespace bridge;
using VsKit::CUniStream;

void VsMsgbus::StopIosForProduct(const std::string& productId) {
    for (const auto& [kind, io] : CopyIos()) {
        if (io == nullptr) {
            continue;
        }
        try {
            io->UnregisterProduct(productId);
        } catch (const AgentException& refusal) {
            ComposeUnlogged([&, kindOfIo = kind](CUniStream& text) {
                text << L"Failed to stop VsMsgbus io [" << kindOfIo << L"] due to exception: [" << refusal.Code()
                     << L"]";
            });
        }
    }
}

void VsMsgbus::ReleaseAllIos(const std::string* productId) {
    const CallGate::Call stop(startsAndStops);
    CUniStream text;
    VsMsgbusIoMap taken = TakeIos();
    for (auto& [kind, io] : taken) {
        try {
            if (io != nullptr) {
                UnregisterIo(*io, productId);
                io.reset();
            }
            text << L"Successfully released/unregistered VsMsgbus io [" << kind << L"]";
            continue;
        } catch (const AgentException& refusal) {
            text << L"Failed to release VsMsgbus io [" << kind << L"] due to exception: [" << refusal.Code() << L"]";
        } catch (...) {
            text << L"Failed to release VsMsgbus io due to unknown exception";
        }
        // The agent may still call the service: its admission keeps it until the agent's client is let go of.
        if (productId != nullptr) {
            WriteBridgeLog(text);
        }
    }
}

// One product's refusal keeps no other product registered.
void VsMsgbus::UnregisterIo(VsMsgbusIo& io, const std::string* productId) {
    try {
        if (productId != nullptr) {
            io.UnregisterProduct(*productId);
        }
    } catch (...) {
        Guarded([&] { io.UnregisterAll(); });
        throw;
    }
    io.UnregisterAll();
}

void VsMsgbus::Stop() noexcept {
    CUniStream text;
    try {
        // The first product releases them all; without one, as in the last Exit, or without memory to look the products
        // up, they are released all the same.
        for (const auto& [productId, serviceMask] : Guarded(ProductTable{}, [&] { return CopyProducts(); })) {
            ReleaseAllIos(&productId);
        }
        ReleaseAllIos(nullptr);
        text << L"Successfully release all VsMsgbus ios";
        Check(NyClientStop(clientRecord->client));
        started = 0;
        text << L"Successfully stopped VsMsgbus";
        return;
    } catch (const AgentException& failure) {
        text << L"Failed to stop VsMsgbus, exception:[" << failure.what() << L"]";
    } catch (...) {
        text << L"Failed to stop VsMsgbus, unknown exception";
    }
    WriteBridgeLog(text);
}
