#pragma once

#include <tgx/host.h>

/// The host's implementation of every operation, as plain functions that throw HostError. Code of the host never goes
/// through the tables; it does not call these either, but the functions and classes that they are made of.
namespace tgx::host::operations {

#define TGX_OPERATION(family, result, name, parameters, arguments) result name parameters;
#include <tgx/operations/all.def>
#undef TGX_OPERATION

}  // namespace tgx::host::operations
