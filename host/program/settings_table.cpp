#include "host/program/settings_table.h"

#include "host/settings/worded_settings.h"

#include <fmt/format.h>

#include <algorithm>

namespace host {

namespace {

std::string unit_text(const worded_field& field) {
    return field.unit.empty() ? "" : " " + field.unit;
}

std::string default_text(const worded_field& field) {
    return field.default_value.empty() ? "nothing" : field.default_value + unit_text(field);
}

} // namespace

void print_settings(const std::string& effect_name, const preset& shown) {
    const auto fields = describe_settings(shown);
    if (fields.empty()) {
        fmt::print("{} has no settings\n", effect_name);
        return;
    }
    std::size_t name_width = 0;
    for (const worded_field& field : fields) {
        name_width = std::max(name_width, field.name.size());
    }
    fmt::print("{}\n", effect_name);
    for (const worded_field& field : fields) {
        fmt::print("  {:{}} = {}{}\n", field.name, name_width, field.value, unit_text(field));
        fmt::print("  {:{}}   {}; {}; default {}\n", "", name_width, field.meaning, field.range, default_text(field));
    }
}

} // namespace host
