// The agent's handle types, each with the type of the object behind it.
#pragma once

#include "ny_simulator.h"

namespace simulator {

class Client;
class Logger;
class PolicyIterator;
class PolicyUri;
class PropertyBag;
struct Array;
struct Buffer;
struct MessageBus;
struct PolicyBag;
struct Table;
struct UpdaterEvent;
struct Value;
struct WideBuffer;

// The kinds of the control interface, and two that the agent only lends.
enum class HandleKind : int32_t {
    Any = NY_SIM_ANY,
    Buffer = NY_SIM_BUFFER,
    WideBuffer = NY_SIM_WBUFFER,
    Variant = NY_SIM_VARIANT,
    Table = NY_SIM_TABLE,
    Array = NY_SIM_ARRAY,
    Client = NY_SIM_CLIENT,
    PropertyBag = NY_SIM_PROPERTY_BAG,
    Logger = NY_SIM_LOGGER,
    PolicyUri = NY_SIM_POLICY_URI,
    PolicyBag = NY_SIM_POLICY_BAG,
    PolicyIterator = NY_SIM_POLICY_ITERATOR,
    MessageBus = 1000,
    UpdaterEvent = 1001,
};

// The kind's name, for a person to read.
const char* NameOf(HandleKind kind);

template <class ObjectType, HandleKind handleKind>
struct HandleOf {
    using Object = ObjectType;
    static constexpr HandleKind kind = handleKind;
};

template <class Handle>
struct HandleTraits;
template <>
struct HandleTraits<ny_buffer_t> : HandleOf<Buffer, HandleKind::Buffer> {};
template <>
struct HandleTraits<ny_wbuffer_t> : HandleOf<WideBuffer, HandleKind::WideBuffer> {};
template <>
struct HandleTraits<ny_variant_t> : HandleOf<Value, HandleKind::Variant> {};
template <>
struct HandleTraits<ny_table_t> : HandleOf<Table, HandleKind::Table> {};
template <>
struct HandleTraits<ny_array_t> : HandleOf<Array, HandleKind::Array> {};
template <>
struct HandleTraits<ny_client_t> : HandleOf<Client, HandleKind::Client> {};
template <>
struct HandleTraits<ny_property_bag_t> : HandleOf<PropertyBag, HandleKind::PropertyBag> {};
template <>
struct HandleTraits<ny_logger_t> : HandleOf<Logger, HandleKind::Logger> {};
template <>
struct HandleTraits<ny_policy_uri_t> : HandleOf<PolicyUri, HandleKind::PolicyUri> {};
template <>
struct HandleTraits<ny_policy_bag_t> : HandleOf<PolicyBag, HandleKind::PolicyBag> {};
template <>
struct HandleTraits<ny_policy_bag_iterator_t> : HandleOf<PolicyIterator, HandleKind::PolicyIterator> {};
template <>
struct HandleTraits<ny_msgbus_t> : HandleOf<MessageBus, HandleKind::MessageBus> {};
template <>
struct HandleTraits<ny_updater_event_t> : HandleOf<UpdaterEvent, HandleKind::UpdaterEvent> {};

}  // namespace simulator
