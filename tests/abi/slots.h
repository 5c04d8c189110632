// The numbers that the other compiler's host knows the module by: slots and class identities, written out by hand.
#pragma once

#include <cstddef>
#include <string_view>

namespace abi_test {

namespace module_slot {
inline constexpr std::size_t get_api_version = 0;
inline constexpr std::size_t get_service_list = 1;
inline constexpr std::size_t save_settings = 2;
inline constexpr std::size_t load_settings = 3;
inline constexpr std::size_t set_module_names = 4;
inline constexpr std::size_t enable_thread_checks = 5;
inline constexpr std::size_t reserved = 6;
} // namespace module_slot

namespace record_slot {
inline constexpr std::size_t get_instance = 0;
} // namespace record_slot

namespace service_slot {
inline constexpr std::size_t release = 0;
inline constexpr std::size_t add_ref = 1;
inline constexpr std::size_t query = 2;
} // namespace service_slot

namespace factory_slot {
inline constexpr std::size_t get_name = 3;
inline constexpr std::size_t get_default_preset = 4;
inline constexpr std::size_t instantiate = 5;
inline constexpr std::size_t get_identity = 6;
inline constexpr std::size_t has_settings_dialog = 7;
inline constexpr std::size_t edit_settings = 8;
inline constexpr std::size_t show_settings_dialog = 9;     ///< of effects with a dialog only
inline constexpr std::size_t is_conversion_supported = 10; ///< of converters only
inline constexpr std::size_t make_preset = 11;
} // namespace factory_slot

namespace layout_factory_slot {
inline constexpr std::size_t instantiate = 3;
inline constexpr std::size_t get_identity = 4;
} // namespace layout_factory_slot

namespace instance_slot {
inline constexpr std::size_t run = 3;
inline constexpr std::size_t flush = 4;
inline constexpr std::size_t get_latency = 5;
inline constexpr std::size_t needs_track_change_mark = 6;
inline constexpr std::size_t run_abortable = 7;
inline constexpr std::size_t on_track_end = 8;
inline constexpr std::size_t on_playback_end = 9;
inline constexpr std::size_t on_block = 10;
inline constexpr std::size_t rebuild_matrix = 11; ///< of matrix effects only
} // namespace instance_slot

namespace version_slot {
inline constexpr std::size_t get_file_name = 3;
inline constexpr std::size_t get_component_name = 4;
inline constexpr std::size_t get_version = 5;
inline constexpr std::size_t get_about = 6;
} // namespace version_slot

namespace name_check_slot {
inline constexpr std::size_t is_file_name_expected = 3;
} // namespace name_check_slot

namespace class_id {
inline constexpr std::string_view effect_factory = "{0D048731-8AA8-4704-8AD6-189E24D48C88}";
inline constexpr std::string_view effect_factory_with_dialog = "{9EC5D45E-10F5-46A7-9546-F3ACEC68B149}";
inline constexpr std::string_view resampler_factory = "{5B8E3A54-7C1D-4F0A-9B62-0D7F6C2A91E4}";
inline constexpr std::string_view layout_effect_factory = "{E3F0C95F-7A0B-48BC-9658-71A469688876}";
inline constexpr std::string_view effect_instance = "{9FB1DA49-AF6F-4FD2-9C73-48A8A109003B}";
inline constexpr std::string_view abortable_effect_instance = "{2A42AFEA-940B-455B-AEFF-CFDACAF52AFF}";
inline constexpr std::string_view component_version = "{10BB3EBD-DDF7-4975-A3CC-23084829453E}";
inline constexpr std::string_view file_name_check = "{0639283E-3004-4E5C-B1B3-6DFF08A79284}";
inline constexpr std::string_view nobody = "{00112233-4455-6677-8899-AABBCCDDEEFF}";
} // namespace class_id

} // namespace abi_test
