#include "host/module/loaded_module.h"

#include "host/platform/path_text.h"
#include "velmora/service_factory.h"

#include <fmt/format.h>

namespace host {

namespace {

shared_library load(const std::filesystem::path& file) {
    try {
        return shared_library(file);
    } catch (const std::exception& failure) {
        throw module_error(fmt::format("cannot load the module {}: {}", to_utf8(file), failure.what()));
    }
}

} // namespace

loaded_module::loaded_module(const std::filesystem::path& file, velmora::host_api* api) : library_(load(file)) {
    auto* const get_interface =
        reinterpret_cast<velmora::get_interface_function*>(library_.find(velmora::get_interface_name));
    if (get_interface == nullptr) {
        throw module_error(
            fmt::format("{} is not a module: it does not export {}", to_utf8(file), velmora::get_interface_name));
    }
    interface_ = get_interface(api);
    if (interface_ == nullptr || interface_->get_api_version() != velmora::api_version) {
        throw module_error(fmt::format("{} speaks another version of the module interface than {}", to_utf8(file),
                                       velmora::api_version));
    }
    const auto whole = std::filesystem::absolute(file);
    interface_->set_module_names(to_utf8(whole).c_str(), to_utf8(whole.filename()).c_str());
}

std::vector<velmora::service_factory*> loaded_module::services() const {
    std::vector<velmora::service_factory*> records;
    for (auto* record = interface_->get_service_list(); record != nullptr; record = record->next) {
        records.push_back(record);
    }
    return records;
}

} // namespace host
