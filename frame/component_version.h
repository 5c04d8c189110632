// The module's version record and the check of its file name.
#pragma once

#include "frame/services.h"
#include "velmora/component_version.h"
#include "velmora/file_name_check.h"

#include <string_view>

namespace kelvane {

class version_record final : public static_service<velmora::component_version> {
public:
    void get_file_name(velmora::string_receiver* out) override;
    void get_component_name(velmora::string_receiver* out) override;
    void get_version(velmora::string_receiver* out) override;
    void get_about(velmora::string_receiver* out) override;
};

/// Compares the last component of the path that the host gave with the module's name, the same on every platform.
class file_name_service final : public static_service<velmora::file_name_check> {
public:
    bool is_file_name_expected() override;
};

/// What follows the last '/', '\\', ':' or '|' of a path; the whole text when there is none.
std::string_view last_component(std::string_view path);

} // namespace kelvane
