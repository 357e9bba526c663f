// The structures and interfaces that cross between bridge and module, as every compiler must lay them out. The order of
// the slots is in slots.txt.
#include <VsMsgbus.h>
#include <loglib/LogLib.h>

#include <cstddef>

namespace {

template <class Structure>
constexpr bool HasSize(size_t size, size_t alignment = 8) {
    return sizeof(Structure) == size && alignof(Structure) == alignment;
}
// An interface is a pointer to its slots and nothing else.
template <class Interface>
constexpr bool IsInterface() {
    return HasSize<Interface>(sizeof(void*), alignof(void*));
}

using VsKitMsgbus::lpc_buffer;
static_assert(HasSize<lpc_buffer>(24));
static_assert(offsetof(lpc_buffer, kind) == 0 && offsetof(lpc_buffer, length) == 8 && offsetof(lpc_buffer, data) == 16);
static_assert(sizeof(lpc_buffer::kind) == 4 && sizeof(lpc_buffer::length) == 8);

static_assert(HasSize<ny_dl_t>(8) && offsetof(ny_dl_t, module) == 0);
static_assert(HasSize<ny_temp_buffer_t>(272));
static_assert(offsetof(ny_temp_buffer_t, capacity) == 0 && offsetof(ny_temp_buffer_t, heap) == 8 &&
              offsetof(ny_temp_buffer_t, inlineStorage) == 16);

using LogUtils::LogRecord;
static_assert(HasSize<LogRecord>(32));
static_assert(offsetof(LogRecord, sourceFile) == 0 && offsetof(LogRecord, sourceLine) == 8 &&
              offsetof(LogRecord, severity) == 12 && offsetof(LogRecord, component) == 16 &&
              offsetof(LogRecord, text) == 24);
static_assert(HasSize<LogUtils::LogEvent>(40));

static_assert(HasSize<VsKitMsgbus::etag_PRODUCT_RETURN_VALUE>(4, 4));
static_assert(HasSize<VsKit::cp_wchar>(8) && sizeof(wchar_t) == 2 && sizeof(bool) == 1 && sizeof(int) == 4);

using namespace VsKitMsgbus;
static_assert(IsInterface<ILogSink>());
static_assert(IsInterface<INYCollectProperties>() && IsInterface<INYCollectProperties::ISet>());
static_assert(IsInterface<INYEnforcePolicy>() && IsInterface<INYEnforcePolicy::IPolicyBag>() &&
              IsInterface<INYEnforcePolicy::IPolicyBag::ICallbacks>());
static_assert(IsInterface<INYTaskEnforcer>() && IsInterface<INYTaskEnforcer::ITaskBag>() &&
              IsInterface<INYTaskEnforcer::ITaskBag::ISettingVisitor>());
static_assert(IsInterface<INYUpdateNotifyCallback>() && IsInterface<INYUpdateNotifyCallback::ISet>());
static_assert(IsInterface<LogUtils::LogListener>() && IsInterface<LogUtils::LogManager>());

}  // namespace
