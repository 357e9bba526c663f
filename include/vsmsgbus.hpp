/// @file
/// The C++ layer for modules: one object for a product, handlers that are callables, errors that are exceptions.
///
/// Header only, C++20, compiled wholly inside the module: nothing of the standard library crosses to the bridge, so
/// that every compiler may be used that can compile the plain interfaces of VsMsgbus.h, which stay as they are and may
/// be used beside this.
///
/// Conventions
///
///  1. Texts that go in are vsmsgbus::Text: UTF-8 or wide, as the module has them. Texts that come out are wide, as
///     the bridge gives them; vsmsgbus::Utf8 converts.
///  2. Handlers are called on threads of the agent's, as the plain interface's comments say. What a handler throws is
///     caught here, given to the log handler with its what(), and turned into the answer that the contract has for a
///     failure.
///  3. What a function cannot do it says by throwing vsmsgbus::Error, or by an empty optional where "not there" is an
///     ordinary answer.
#pragma once

#include "VsMsgbus/cpp/Crypto.hpp"
#include "VsMsgbus/cpp/Error.hpp"
#include "VsMsgbus/cpp/Information.hpp"
#include "VsMsgbus/cpp/Policies.hpp"
#include "VsMsgbus/cpp/Product.hpp"
#include "VsMsgbus/cpp/Properties.hpp"
#include "VsMsgbus/cpp/Setting.hpp"
#include "VsMsgbus/cpp/Tasks.hpp"
#include "VsMsgbus/cpp/Text.hpp"
#include "VsMsgbus/cpp/Updates.hpp"
