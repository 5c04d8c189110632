// The built module, loaded by its plain file name.
#pragma once

#include "tests/abi/raw_object.h"

#include <string_view>
#include <vector>

namespace abi_test {

/// The exported function: takes the host's object, which may be null, and returns the module's.
using get_interface_function = void*(void*);

/// The export of kelvane.so or kelvane.dll in the current folder. Throws std::runtime_error without it.
get_interface_function* module_export();

/// The module's object, entered without a host object.
void* module_object();

/// Every record of the module's list, in the order of the list.
std::vector<raw_record*> service_records();

/// The service of a record, by the record's own function. Static: it need not be given back.
void* service_of(raw_record* record);

/// The service of the one record of `class_id`. Throws std::runtime_error when there is none, or a second one.
void* only_service(std::string_view class_id);

/// Every listed service that answers to the identity of effect factories.
std::vector<void*> effect_factories();

/// The effect factory of `identity`. Throws std::runtime_error without it.
void* factory_of(std::string_view identity);

} // namespace abi_test
