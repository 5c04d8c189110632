// What a module says of itself.
#pragma once

#include "velmora/service.h"

namespace velmora {

class string_receiver;

/// Each operation sets the text of the given receiver. [any-thread]
class component_version : public service {
public:
    static constexpr guid class_id{0x10BB3EBD, 0xDDF7, 0x4975, {0xA3, 0xCC, 0x23, 0x08, 0x48, 0x29, 0x45, 0x3E}};

    /// The file name that the host gave through `module_interface::set_module_names`.
    virtual void get_file_name(string_receiver* out) = 0;
    virtual void get_component_name(string_receiver* out) = 0;
    virtual void get_version(string_receiver* out) = 0;
    /// Lines separated by line feeds, none at the end.
    virtual void get_about(string_receiver* out) = 0;

protected:
    ~component_version() = default;
};

} // namespace velmora
