// The one function that the module exports.
#include "frame/compiler.h"
#include "frame/module.h"

extern "C" KELVANE_EXPORT velmora::module_interface* velmora_get_interface(velmora::host_api* host) {
    return kelvane::enter_module(host);
}
