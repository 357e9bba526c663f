#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "VsMsgbus/EnforcePolicy.h"
#include "VsMsgbus/LogSink.h"
#include "agent/ny_agent.h"
#include "values/ModuleInterface.h"

namespace bridge {

class AgentSession;

// The bag through which a module reads its policies while it enforces them. It lives for one EnforcePolicy, on that
// thread.
class CPolicyBag final : public VsKitMsgbus::INYEnforcePolicy::IPolicyBag {
public:
    // Borrows all it is given. A bag without a client, or with one that is no longer the bridge's, gives nothing and
    // asks the agent nothing.
    CPolicyBag(ny_client_t* agentClient, int32_t modulesLogLevel, ModuleInterface<VsKitMsgbus::ILogSink> moduleSink,
               const wchar_t* product) noexcept
        : client(agentClient), logLevel(modulesLogLevel), sink(moduleSink), productId(product) {}

    // The two walks let out what the callbacks throw, the agent exception excepted.
    bool EnumerateUserPolicies(const wchar_t* wantedId, ICallbacks* callbacks, const wchar_t* user,
                               const wchar_t* domain) override;
    bool EnumeratePolicies(const wchar_t* wantedId, ICallbacks* callbacks) override;
    void Dump(VsKitMsgbus::lpc_buffer* result) noexcept override;
    std::string GetDigest(const char* wantedId) noexcept override;
    bool GetDigestText(const char* wantedId, VsKitMsgbus::lpc_buffer* digests) noexcept override;

    // From now on the bag gives nothing.
    void Close() noexcept { closed = 1; }
    int32_t LogLevel() const noexcept { return logLevel; }

private:
    struct Account {
        const wchar_t* domain;
        const wchar_t* user;
    };

    // The session of the bag's client, which a walk must hold while it reads. Null when the bag is closed, and when the
    // client is gone because a module left the bridge from inside its enforcer.
    std::shared_ptr<AgentSession> OpenSession() const noexcept;
    // A null account stands for the machine.
    bool Walk(const wchar_t* wantedId, ICallbacks* callbacks, const Account* account) const;
    void LogFailure(const wchar_t* wantedId, int32_t code) const noexcept;
    // Returns whether all digests were read. A failure of the agent's is logged.
    bool ReadDigests(const char* wantedId, std::string& digests) const noexcept;
    void AppendDigests(const AgentSession& session, const char* wantedId, std::string& digests) const;

    uintptr_t closed = 0;
    ny_client_t* const client;
    const int32_t logLevel;
    const ModuleInterface<VsKitMsgbus::ILogSink> sink;
    const wchar_t* const productId;
};

}  // namespace bridge
