// Registry keys as programs hold them.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "KeyNode.h"

namespace win32 {

class OpenKey final : public Object {
public:
    OpenKey(std::shared_ptr<KeyNode> openedNode, REGSAM grantedAccess)
        : node(std::move(openedNode)), access(grantedAccess) {}

    const std::shared_ptr<KeyNode> node;
    const REGSAM access;
    // That of the first request for a notification, which holds for all later ones.
    std::optional<Interest> interest;
};

// Fails with ERROR_INVALID_HANDLE when the handle is not that of an open key, and with ERROR_ACCESS_DENIED when the key
// was opened without the access. A predefined handle is no open key.
std::shared_ptr<OpenKey> OpenKeyOf(HKEY key, REGSAM access);

// The node of an open key or of a predefined one, as redirected. Fails as OpenKeyOf, and with ERROR_KEY_DELETED.
std::shared_ptr<KeyNode> NodeOf(HKEY key, REGSAM access = 0);

// A predefined key stands for this node from now on; null undoes that. Fails with ERROR_INVALID_HANDLE for a key that
// is not predefined.
void Redirect(HKEY predefined, std::shared_ptr<KeyNode> replacement);
bool IsPredefined(HKEY key);

enum class Missing { Make, Fail };

// The node at the path below another, in the view that `view` names: the 32-bit one of HKEY_LOCAL_MACHINE\Software is a
// tree of its own. Fails with ERROR_FILE_NOT_FOUND, and with ERROR_BAD_PATHNAME for a path that begins with a slash.
// `isNew` tells whether the last node was made.
std::shared_ptr<KeyNode> Walk(std::shared_ptr<KeyNode> from, const char* path, REGSAM view, Missing missing,
                              bool* isNew = nullptr);

}  // namespace win32
