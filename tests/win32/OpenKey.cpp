#include "OpenKey.h"

#include <utility>

namespace win32 {

namespace {

constexpr char nodeOf32BitView[] = "Wow6432Node";

struct PredefinedKey {
    HKEY key;
    std::shared_ptr<KeyNode> root = std::make_shared<KeyNode>();
    std::shared_ptr<KeyNode> replacement = nullptr;
};

struct Hive {
    PredefinedKey keys[2] = {{HKEY_LOCAL_MACHINE}, {HKEY_CURRENT_USER}};
    // Of the true HKEY_LOCAL_MACHINE alone: what it is redirected to has no views.
    const std::shared_ptr<KeyNode> software = keys[0].root->AddChild("Software");
    const std::shared_ptr<KeyNode> softwareOf32Bit = software->AddChild(nodeOf32BitView);
};

Hive& TheHive() {
    static Hive& hive = *new Hive;
    return hive;
}

PredefinedKey* Predefined(HKEY key) {
    for (PredefinedKey& predefined : TheHive().keys) {
        if (predefined.key == key) {
            return &predefined;
        }
    }
    return nullptr;
}

bool HasName(std::string_view left, std::string_view right) {
    return !NameLess()(left, right) && !NameLess()(right, left);
}

// Takes the next name off the front of the path; empty at its end.
std::string_view TakeName(std::string_view& path) {
    const size_t begin = std::min(path.find_first_not_of('\\'), path.size());
    const size_t end = std::min(path.find('\\', begin), path.size());
    const std::string_view name = path.substr(begin, end - begin);
    path.remove_prefix(end);
    return name;
}

// Where a path that has come to `node` goes on with `next` in the view.
std::shared_ptr<KeyNode> InView(std::shared_ptr<KeyNode> node, REGSAM view, std::string_view next) {
    const bool isParted = (view & KEY_WOW64_32KEY) != 0 && node == TheHive().software;
    return isParted && !HasName(next, nodeOf32BitView) ? TheHive().softwareOf32Bit : node;
}

}  // namespace

std::shared_ptr<OpenKey> OpenKeyOf(HKEY key, REGSAM access) {
    auto open = ObjectOf<OpenKey>(key);
    if ((open->access & access) != access) {
        throw Failure{ERROR_ACCESS_DENIED};
    }
    return open;
}

std::shared_ptr<KeyNode> NodeOf(HKEY key, REGSAM access) {
    const PredefinedKey* predefined = Predefined(key);
    auto node = predefined == nullptr                ? OpenKeyOf(key, access)->node
                : predefined->replacement != nullptr ? predefined->replacement
                                                     : predefined->root;
    if (node->IsDeleted()) {
        throw Failure{ERROR_KEY_DELETED};
    }
    return node;
}

void Redirect(HKEY predefined, std::shared_ptr<KeyNode> replacement) {
    PredefinedKey* const found = Predefined(predefined);
    if (found == nullptr) {
        throw Failure{ERROR_INVALID_HANDLE};
    }
    found->replacement = std::move(replacement);
}

bool IsPredefined(HKEY key) {
    return Predefined(key) != nullptr;
}

std::shared_ptr<KeyNode> Walk(std::shared_ptr<KeyNode> from, const char* path, REGSAM view, Missing missing,
                              bool* isNew) {
    std::string_view rest = path != nullptr ? path : "";
    if (rest.starts_with('\\')) {
        throw Failure{ERROR_BAD_PATHNAME};
    }
    std::shared_ptr<KeyNode> node = std::move(from);
    bool isMade = false;
    for (std::string_view name = TakeName(rest); !name.empty(); name = TakeName(rest)) {
        node = InView(std::move(node), view, name);
        std::shared_ptr<KeyNode> child = node->Child(name);
        isMade = child == nullptr;
        if (isMade && missing == Missing::Fail) {
            throw Failure{ERROR_FILE_NOT_FOUND};
        }
        node = isMade ? node->AddChild(name) : std::move(child);
    }
    if (isNew != nullptr) {
        *isNew = isMade;
    }
    return InView(std::move(node), view, {});
}

}  // namespace win32
