#include "host/program/settings_table.h"

#include "host/settings/worded_settings.h"

#include <fmt/format.h>

#include <algorithm>

namespace host {

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
        const std::string unit = field.unit.empty() ? "" : " " + field.unit;
        fmt::print("  {:{}} = {}{}\n", field.name, name_width, field.value, unit);
        fmt::print("  {:{}}   {}; {}; default {}{}\n", "", name_width, field.meaning, field.range, field.default_value,
                   unit);
    }
}

} // namespace host
