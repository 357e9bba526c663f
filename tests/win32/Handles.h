// The handles of the process and the objects behind them.
#pragma once

#include <memory>
#include <utility>

#include "Call.h"
#include "win32/types.h"

namespace win32 {

// Lives as long as a handle is open or a thread uses it.
class Object {
public:
    Object() = default;
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
};

// A new handle of the object.
HANDLE OpenHandle(std::shared_ptr<Object> object);
// The object whose handle was open until now; null when it was not.
std::shared_ptr<Object> TakeHandle(HANDLE handle);
// Null for a handle that is not open.
std::shared_ptr<Object> FindObject(HANDLE handle);

// The object behind the handle. Fails with ERROR_INVALID_HANDLE when it is not open or of another kind.
template <class Kind>
std::shared_ptr<Kind> ObjectOf(HANDLE handle) {
    auto object = std::dynamic_pointer_cast<Kind>(FindObject(handle));
    if (object == nullptr) {
        throw Failure{ERROR_INVALID_HANDLE};
    }
    return object;
}

}  // namespace win32
