// A module with the faults that a host has to live with: its effect meets any payload with an exception, and throws
// when it runs.
#include "frame/compiler.h"
#include "velmora/effect_factory.h"
#include "velmora/effect_instance.h"
#include "velmora/effect_preset.h"
#include "velmora/module_interface.h"
#include "velmora/service_factory.h"
#include "velmora/string_receiver.h"

#include <cstdint>
#include <exception>

#ifndef UNRULY_API_VERSION
#define UNRULY_API_VERSION velmora::api_version
#endif

namespace {

constexpr velmora::guid identity{0x4E1F2D10, 0x1C5B, 0x4B53, {0x9C, 0x11, 0x21, 0x7E, 0x63, 0x0B, 0x5A, 0x01}};

/// A text that only this library has: whoever shows it must have copied it before the library goes.
class unruly_error : public std::exception {
public:
    const char* what() const noexcept override { return "the module's own words"; }
};

class unruly_effect final : public velmora::effect_instance {
public:
    std::uint32_t release() override { return 1; }
    std::uint32_t add_ref() override { return 1; }
    bool query(velmora::service**, const velmora::guid*) override { return false; }
    void run(velmora::block_list*, void*, std::uint32_t) override {}
    void flush() override {}
    double get_latency() override { return 0.25; }
    bool needs_track_change_mark() override { return false; }
    void run_abortable(velmora::block_list*, void*, std::uint32_t, velmora::abort_signal*) override {
        throw unruly_error();
    }
    void on_track_end(velmora::abort_signal*) override {}
    void on_playback_end(velmora::abort_signal*) override {}
    bool on_block(velmora::sample_block*, velmora::abort_signal*) override { return true; }
};

unruly_effect the_effect;

class unruly_factory final : public velmora::effect_factory {
public:
    std::uint32_t release() override { return 1; }
    std::uint32_t add_ref() override { return 1; }
    bool query(velmora::service** out, const velmora::guid* asked_class) override {
        if (*asked_class == velmora::effect_factory::class_id) {
            *out = this;
            return true;
        }
        return false;
    }
    void get_name(velmora::string_receiver* name) override { name->set_text("Unruly", 6); }
    void get_default_preset(velmora::effect_preset* preset) override {
        preset->set_owner(&identity);
        preset->set_data(nullptr, 0);
    }
    bool instantiate(velmora::effect_instance** out, const velmora::effect_preset* preset) override {
        if (preset->get_data_size() != 0) {
            throw unruly_error();
        }
        *out = &the_effect;
        return true;
    }
    void get_identity(velmora::guid* out) override { *out = identity; }
    bool has_settings_dialog() override { return false; }
    bool edit_settings(velmora::effect_preset*, void*) override { return false; }
};

unruly_factory the_factory;

class unruly_record final : public velmora::service_factory {
public:
    unruly_record() { class_id = &velmora::effect_factory::class_id; }
    void get_instance(velmora::service** out) override { *out = &the_factory; }
};

unruly_record the_record;

class unruly_module final : public velmora::module_interface {
public:
    std::uint32_t get_api_version() override { return UNRULY_API_VERSION; }
    velmora::service_factory* get_service_list() override { return &the_record; }
    void save_settings(velmora::settings_writer*, velmora::abort_signal*) override {}
    void load_settings(velmora::settings_reader*, velmora::abort_signal*) override {}
    void set_module_names(const char*, const char*) override {}
    void enable_thread_checks(bool) override {}
    bool reserved() override { return false; }
};

unruly_module the_module;

} // namespace

extern "C" KELVANE_EXPORT velmora::module_interface* velmora_get_interface(velmora::host_api*) {
    return &the_module;
}
