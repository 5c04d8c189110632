// Whether a module's file still has its own name.
#pragma once

#include "velmora/service.h"

namespace velmora {

class file_name_check : public service {
public:
    static constexpr guid class_id{0x0639283E, 0x3004, 0x4E5C, {0xB1, 0xB3, 0x6D, 0xFF, 0x08, 0xA7, 0x92, 0x84}};

    /// Whether the last component of the path given through `module_interface::set_module_names` is the expected file
    /// name, byte for byte. Never throws. [any-thread]
    virtual bool is_file_name_expected() = 0;

protected:
    ~file_name_check() = default;
};

} // namespace velmora
