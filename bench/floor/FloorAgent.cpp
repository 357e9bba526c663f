#include "bench/floor/FloorAgent.h"

#include <cstring>

#include "bench/floor/AgentPointers.h"

namespace bench {

namespace {

// A text as the agent gives it, given back at its end. The agent has it twice asked for: length, then text.
class Wide {
public:
    explicit Wide(std::string_view narrow) {
        ny_variant_t* variant = nullptr;
        Require(pointerTo<&::ny_variant_create_from_string>(narrow.data(), narrow.size(), &variant));
        Read(variant);
        Require(pointerTo<&::ny_variant_release>(variant));
    }
    explicit Wide(ny_variant_t* variant) { Read(variant); }
    ~Wide() { pointerTo<&::ny_wbuffer_release>(buffer); }
    Wide(const Wide&) = delete;
    Wide& operator=(const Wide&) = delete;

    const wchar_t* text = nullptr;
    size_t length = 0;

private:
    void Read(ny_variant_t* variant) {
        size_t ignored = 0;
        Require(pointerTo<&::ny_variant_get_wstring_buffer>(variant, &buffer));
        Require(pointerTo<&::ny_wbuffer_get_string>(buffer, &text, &length));
        Require(pointerTo<&::ny_wbuffer_get_string>(buffer, &text, &ignored));
    }

    ny_wbuffer_t* buffer = nullptr;
};

class Narrow {
public:
    explicit Narrow(std::wstring_view wide) {
        ny_variant_t* variant = nullptr;
        Require(pointerTo<&::ny_variant_create_from_wstring>(wide.data(), wide.size(), &variant));
        Read(variant);
        Require(pointerTo<&::ny_variant_release>(variant));
    }
    explicit Narrow(ny_variant_t* variant) { Read(variant); }
    ~Narrow() { pointerTo<&::ny_buffer_release>(buffer); }
    Narrow(const Narrow&) = delete;
    Narrow& operator=(const Narrow&) = delete;

    const char* text = nullptr;
    size_t length = 0;

private:
    void Read(ny_variant_t* variant) {
        size_t ignored = 0;
        Require(pointerTo<&::ny_variant_get_string_buffer>(variant, &buffer));
        Require(pointerTo<&::ny_buffer_get_string>(buffer, &text, &length));
        Require(pointerTo<&::ny_buffer_get_string>(buffer, &text, &ignored));
    }

    ny_buffer_t* buffer = nullptr;
};

}  // namespace

std::wstring FloorWiden(std::string_view text) {
    const Wide wide(text);
    return std::wstring(wide.text, wide.length);
}

std::string FloorNarrow(std::wstring_view text) {
    const Narrow narrow(text);
    return std::string(narrow.text, narrow.length);
}

namespace {

class Set final : public VsKitMsgbus::INYCollectProperties::ISet {
public:
    explicit Set(ny_property_bag_t* bagOfAgent) : bag(bagOfAgent) {}

    bool SetProperty(const wchar_t* path, const wchar_t* name, const wchar_t* value) override {
        const Narrow narrowPath{std::wstring_view(path)};
        const Narrow narrowName{std::wstring_view(name)};
        ny_variant_t* variant = nullptr;
        const std::wstring_view wide(value);
        Require(pointerTo<&::ny_variant_create_from_wstring>(wide.data(), wide.size(), &variant));
        Require(pointerTo<&::ny_property_bag_add_property>(bag, narrowPath.text, narrowName.text, variant));
        Require(pointerTo<&::ny_variant_release>(variant));
        return true;
    }

private:
    ny_property_bag_t* const bag;
};

}  // namespace

void FloorCollect(VsKitMsgbus::INYCollectProperties& module, ny_property_bag_t* bag) {
    Set set(bag);
    module.CollectProperties(true, &set);
}

namespace {

// A null text stays one; the bare agent has none.
template <auto function>
const char* TextOf(ny_policy_uri_t* uri) {
    const char* text = nullptr;
    Require(pointerTo<function>(uri, &text));
    return text;
}

bool HasItem(int32_t code) {
    if (code == NY_ITERATOR_END) {
        return false;
    }
    Require(code);
    return true;
}

// A bag of policies with what it was asked for.
struct Policies {
    Policies(ny_client_t* client, const char* productId, const wchar_t* account) {
        Require(pointerTo<&::ny_policy_uri_create>(&uri));
        Require(pointerTo<&::ny_policy_uri_set_software_id>(uri, productId));
        if (account != nullptr) {
            const Narrow user{std::wstring_view(account)};
            Require(pointerTo<&::ny_policy_uri_set_user>(uri, user.text));
        }
        Require(pointerTo<&::ny_policy_get>(client, uri, &bag));
        Require(pointerTo<&::ny_policy_bag_get_uri_iterator>(bag, &uris));
    }
    ~Policies() {
        pointerTo<&::ny_policy_bag_iterator_release>(uris);
        pointerTo<&::ny_policy_uri_release>(uri);
        pointerTo<&::ny_policy_bag_release>(bag);
    }
    Policies(const Policies&) = delete;
    Policies& operator=(const Policies&) = delete;

    ny_policy_uri_t* uri = nullptr;
    ny_policy_bag_t* bag = nullptr;
    ny_policy_bag_iterator_t* uris = nullptr;
};

void WalkSettings(ny_policy_bag_t* bag, ny_policy_uri_t* uri, const char* section, const wchar_t* wideSection,
                  FloorCallbacks& callbacks) {
    ny_policy_bag_iterator_t* settings = nullptr;
    Require(pointerTo<&::ny_policy_bag_get_setting_iterator>(bag, uri, section, &settings));
    const char* name = nullptr;
    ny_variant_t* value = nullptr;
    while (HasItem(pointerTo<&::ny_policy_bag_setting_iterator_get_next>(settings, &name, &value))) {
        const Wide wideName{std::string_view(name)};
        const Wide wideValue(value);
        if (!callbacks.OnSetting(wideSection, wideName.text, wideValue.text)) {
            break;
        }
    }
    Require(pointerTo<&::ny_policy_bag_iterator_release>(settings));
}

void WalkSections(ny_policy_bag_t* bag, ny_policy_uri_t* uri, FloorCallbacks& callbacks) {
    ny_policy_bag_iterator_t* sections = nullptr;
    Require(pointerTo<&::ny_policy_bag_get_section_iterator>(bag, uri, &sections));
    const char* section = nullptr;
    while (HasItem(pointerTo<&::ny_policy_bag_section_iterator_get_next>(sections, &section))) {
        const Wide name{std::string_view(TextOf<&::ny_policy_uri_get_pso_name>(uri))};
        const Wide number{std::string_view(TextOf<&::ny_policy_uri_get_pso_param_int>(uri))};
        const Wide text{std::string_view(TextOf<&::ny_policy_uri_get_pso_param_str>(uri))};
        const Wide wideSection{std::string_view(section)};
        if (callbacks.OnSettings(name.text, number.text, text.text) && callbacks.OnSection(wideSection.text, nullptr)) {
            WalkSettings(bag, uri, section, wideSection.text, callbacks);
        }
    }
    Require(pointerTo<&::ny_policy_bag_iterator_release>(sections));
}

}  // namespace

void FloorWalk(ny_client_t* client, const wchar_t* productId, const wchar_t* account, FloorCallbacks& callbacks) {
    const Narrow narrowId{std::wstring_view(productId)};
    const Policies policies(client, narrowId.text, account);
    ny_policy_uri_t* uri = nullptr;
    while (HasItem(pointerTo<&::ny_policy_bag_uri_iterator_get_next>(policies.uris, &uri))) {
        const Wide feature{std::string_view(TextOf<&::ny_policy_uri_get_feature>(uri))};
        const Wide category{std::string_view(TextOf<&::ny_policy_uri_get_category>(uri))};
        const Wide type{std::string_view(TextOf<&::ny_policy_uri_get_type>(uri))};
        const Wide name{std::string_view(TextOf<&::ny_policy_uri_get_name>(uri))};
        if (callbacks.OnContainer(feature.text, category.text, type.text, name.text)) {
            WalkSections(policies.bag, uri, callbacks);
        }
    }
}

std::string FloorDigest(ny_client_t* client, const char* productId) {
    const Policies policies(client, productId, nullptr);
    std::string digests;
    ny_policy_uri_t* uri = nullptr;
    while (HasItem(pointerTo<&::ny_policy_bag_uri_iterator_get_next>(policies.uris, &uri))) {
        digests += TextOf<&::ny_policy_uri_get_pso_digest>(uri);
    }
    return digests;
}

void FloorReportTask(ny_client_t* client, ny_task_t* task, int32_t status) {
    const char* id = nullptr;
    Require(task->methods->get_id(task, &id));
    Require(pointerTo<&::ny_scheduler_update_task_status>(client, id, status));
}

wchar_t* FloorInformation(ny_client_t* client, const char* key) {
    ny_variant_t* variant = nullptr;
    Require(pointerTo<&::ny_info_get>(client, key, &variant));
    wchar_t* copy = nullptr;
    {
        const Narrow narrow(variant);
        const Wide wide{std::string_view(narrow.text, narrow.length)};
        copy = static_cast<wchar_t*>(std::malloc((wide.length + 1) * sizeof(wchar_t)));
        if (copy == nullptr) {
            throw std::bad_alloc();
        }
        std::char_traits<wchar_t>::copy(copy, wide.text, wide.length + 1);
    }
    Require(pointerTo<&::ny_variant_release>(variant));
    return copy;
}

std::filesystem::path RegisteredFolder() {
    constexpr DWORD in32BitView = 0x00020000;  // RRF_SUBKEY_WOW6432KEY, of later systems
    char text[MAX_PATH] = {};
    DWORD size = sizeof text;
    const std::string key = std::string(R"(Software\Corvane\Agent\Applications\)") + bridge::agentSoftwareId;
    if (::RegGetValueA(HKEY_LOCAL_MACHINE, key.c_str(), "RuntimeSdkPath64", RRF_RT_REG_SZ | in32BitView, nullptr, text,
                       &size) != ERROR_SUCCESS) {
        throw std::runtime_error("the agent's folder is not in the registry");
    }
    return text;
}

HMODULE OpenFloorTexts(const std::filesystem::path& folder) {
    const HMODULE variant = LoadedLibrary((folder / "ny_variant.dll").string());
    Resolve<&::ny_buffer_create, &::ny_buffer_get_raw, &::ny_buffer_get_string, &::ny_buffer_release,
            &::ny_wbuffer_get_string, &::ny_wbuffer_release, &::ny_variant_create_from_string,
            &::ny_variant_create_from_wstring, &::ny_variant_get_string_buffer, &::ny_variant_get_wstring_buffer,
            &::ny_variant_release>(variant);
    return variant;
}

uint32_t FloorEncrypt(ny_client_t* client, const unsigned char* data, uint32_t size, unsigned char* out) {
    ny_buffer_t* buffer = nullptr;
    Require(pointerTo<&::ny_buffer_create>(&buffer, size));
    Require(pointerTo<&::ny_crypto_encrypt_data_by_type>(client, 0, data, size, &buffer));
    const unsigned char* bytes = nullptr;
    size_t length = 0;
    Require(pointerTo<&::ny_buffer_get_raw>(buffer, &bytes, &length));
    std::memcpy(out, bytes, length);
    Require(pointerTo<&::ny_buffer_release>(buffer));
    return static_cast<uint32_t>(length);
}

void OpenFloorAgent(const std::filesystem::path& folder) {
    OpenFloorTexts(folder);
    const HMODULE client = LoadedLibrary((folder / "ny_client.dll").string());
    Resolve<&::ny_property_bag_add_property, &::ny_scheduler_update_task_status, &::ny_info_get,
            &::ny_crypto_encrypt_data_by_type, &::ny_policy_get, &::ny_policy_uri_create, &::ny_policy_uri_release,
            &::ny_policy_uri_set_software_id, &::ny_policy_uri_set_user, &::ny_policy_uri_get_feature,
            &::ny_policy_uri_get_category, &::ny_policy_uri_get_type, &::ny_policy_uri_get_name,
            &::ny_policy_uri_get_pso_name, &::ny_policy_uri_get_pso_param_int, &::ny_policy_uri_get_pso_param_str,
            &::ny_policy_uri_get_pso_digest, &::ny_policy_bag_release, &::ny_policy_bag_get_uri_iterator,
            &::ny_policy_bag_get_section_iterator, &::ny_policy_bag_get_setting_iterator,
            &::ny_policy_bag_uri_iterator_get_next, &::ny_policy_bag_section_iterator_get_next,
            &::ny_policy_bag_setting_iterator_get_next, &::ny_policy_bag_iterator_release>(client);
}

}  // namespace bench
