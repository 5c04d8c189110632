#include "host/module/guid_text.h"
#include "host/objects/text.h"
#include "host/platform/path_text.h"
#include "host/program/commands.h"
#include "host/program/console.h"
#include "host/program/module_option.h"
#include "velmora/component_version.h"
#include "velmora/file_name_check.h"
#include "velmora/layout_effect_factory.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace host {

namespace {

struct info_options {
    std::string module_file;
    bool as_json = false;
};

struct version_texts {
    std::string name;
    std::string version;
    std::string file_name;
    std::string about;
};

struct service_line {
    std::string kind;
    std::string name; ///< the display name or, of an effect without one, its GUID
};

/// All that the module says of itself; what it does not say stays empty.
struct module_description {
    std::uint32_t api_version = 0;
    version_texts texts;
    std::optional<bool> has_expected_file_name;
    std::vector<service_line> services;
};

std::string kind_of(const velmora::guid& class_id) {
    struct kind {
        velmora::guid class_id;
        std::string_view name;
    };
    static constexpr std::array<kind, 4> kinds{{
        {velmora::effect_factory::class_id, "effect"},
        {velmora::layout_effect_factory::class_id, "layout effect"},
        {velmora::component_version::class_id, "component version"},
        {velmora::file_name_check::class_id, "file name check"},
    }};
    const auto found =
        std::find_if(kinds.begin(), kinds.end(), [&](const kind& known) { return known.class_id == class_id; });
    return found == kinds.end() ? to_text(class_id) : std::string(found->name);
}

template <class Factory>
std::string identity_text(Factory& factory) {
    velmora::guid identity{};
    factory.get_identity(&identity);
    return to_text(identity);
}

std::string answer(velmora::component_version& version,
                   void (velmora::component_version::*question)(velmora::string_receiver*)) {
    text answered;
    (version.*question)(&answered);
    return answered.str();
}

version_texts texts_of(velmora::component_version& version) {
    return {answer(version, &velmora::component_version::get_component_name),
            answer(version, &velmora::component_version::get_version),
            answer(version, &velmora::component_version::get_file_name),
            answer(version, &velmora::component_version::get_about)};
}

void add_service(module_description& description, velmora::service_factory& record) {
    const auto service = instance_of(record);
    service_line line{kind_of(*record.class_id), ""};
    if (const auto effect = query_as<velmora::effect_factory>(*service)) {
        text name;
        effect->get_name(&name);
        line.name = name.str();
    } else if (const auto layout_effect = query_as<velmora::layout_effect_factory>(*service)) {
        line.name = identity_text(*layout_effect);
    } else if (const auto version = query_as<velmora::component_version>(*service)) {
        description.texts = texts_of(*version);
    } else if (const auto check = query_as<velmora::file_name_check>(*service)) {
        description.has_expected_file_name = check->is_file_name_expected();
    }
    description.services.push_back(std::move(line));
}

module_description describe(const loaded_module& module) {
    module_description description;
    ask_module("the module's description", [&] {
        description.api_version = module.entry().get_api_version();
        for (velmora::service_factory* const record : module.services()) {
            add_service(description, *record);
        }
    });
    return description;
}

void print_text(const module_description& description) {
    const auto& texts = description.texts;
    fmt::print("{} {}\n{}\n\n", texts.name, texts.version, texts.about);
    fmt::print("API version  {}\nFile name    {} ({})\n\n", description.api_version, texts.file_name,
               description.has_expected_file_name.value_or(false) ? "as expected" : "not the one expected");
    fmt::print("Services, in the order in which the host meets them:\n");
    int position = 0;
    for (const service_line& line : description.services) {
        fmt::print("{:4}  {}{}{}\n", ++position, line.kind, line.name.empty() ? "" : "  ", line.name);
    }
}

nlohmann::ordered_json as_json(const module_description& description) {
    nlohmann::ordered_json services = nlohmann::ordered_json::array();
    for (const service_line& line : description.services) {
        services.push_back({{"kind", line.kind}, {"name", line.name}});
    }
    const auto& texts = description.texts;
    return {
        {"name", texts.name},           {"version", texts.version},
        {"about", texts.about},         {"api_version", description.api_version},
        {"file_name", texts.file_name}, {"has_expected_file_name", description.has_expected_file_name.value_or(false)},
        {"services", services}};
}

void run(const info_options& options) {
    const open_module opened(options.module_file, print_notice);
    const module_description description = describe(opened.module);
    if (options.as_json) {
        fmt::print("{}\n", as_json(description).dump(2));
    } else {
        print_text(description);
    }
}

} // namespace

void add_info_command(CLI::App& program) {
    CLI::App* const command = program.add_subcommand("info", "Show what the module says of itself");
    const auto options = std::make_shared<info_options>();
    add_module_option(*command, options->module_file);
    command->add_flag("--json", options->as_json, "Write JSON instead of text");
    command->callback([options] { run(*options); });
}

} // namespace host
