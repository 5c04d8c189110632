#include "frame/component_version.h"

#include "frame/module_state.h"
#include "velmora/string_receiver.h"

namespace kelvane {

namespace {

constexpr std::string_view expected_file_name = "kelvane.dll";

void answer(velmora::string_receiver* out, std::string_view text) {
    out->set_text(text.data(), text.size());
}

} // namespace

void version_record::get_file_name(velmora::string_receiver* out) {
    answer(out, state().file_name);
}

void version_record::get_component_name(velmora::string_receiver* out) {
    answer(out, "Brellix");
}

void version_record::get_version(velmora::string_receiver* out) {
    answer(out, "2.0 beta 12");
}

void version_record::get_about(velmora::string_receiver* out) {
    answer(out, "Standard effects for Velmora.\n"
                "By the two authors of Brellix.\n"
                "Advanced Limiter: thanks to its author.\n"
                "RetroArch resampler: the RetroArch team, 2010-2018.");
}

bool file_name_service::is_file_name_expected() {
    return last_component(state().path) == expected_file_name;
}

std::string_view last_component(std::string_view path) {
    return path.substr(path.find_last_of("/\\:|") + 1);
}

} // namespace kelvane
