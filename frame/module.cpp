#include "frame/module.h"

#include "frame/module_state.h"
#include "frame/service_list.h"
#include "frame/settings_store.h"

#include <string>

namespace kelvane {

namespace {

std::string text_or_empty(const char* text) {
    return text != nullptr ? text : "";
}

class kelvane_module final : public velmora::module_interface {
public:
    std::uint32_t get_api_version() override { return velmora::api_version; }
    velmora::service_factory* get_service_list() override { return service_list::head(); }

    void save_settings(velmora::settings_writer* stream, velmora::abort_signal* abort) override {
        settings_.save(*stream, abort);
    }

    void load_settings(velmora::settings_reader* stream, velmora::abort_signal* abort) override {
        settings_.load(*stream, abort);
    }

    void set_module_names(const char* path, const char* file_name) override {
        state().path = text_or_empty(path);
        state().file_name = text_or_empty(file_name);
    }

    void enable_thread_checks(bool enable) override { state().checks_threads = enable; }
    bool reserved() override { return false; }

private:
    settings_store settings_; // no variables: the effects' settings travel in presets
};

kelvane_module the_module;

} // namespace

velmora::module_interface* enter_module(velmora::host_api* host) noexcept {
    state().host = host;
    return &the_module;
}

} // namespace kelvane
