#include "host/module/guid_text.h"
#include "host/objects/text.h"
#include "tests/support/built_module.h"
#include "velmora/component_version.h"
#include "velmora/layout_effect_factory.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using testing_support::built_module;

constexpr auto effect_class = "{0D048731-8AA8-4704-8AD6-189E24D48C88}";
constexpr auto layout_class = "{E3F0C95F-7A0B-48BC-9658-71A469688876}";

/// Class identity and, of an effect, its own identity and name, in the order in which the host meets them: the reverse
/// of the order of registration.
struct service_row {
    std::string class_id;
    std::string identity;
    std::string name;

    bool operator==(const service_row&) const = default;
};

const std::vector<service_row> expected_services{
    {effect_class, "{0860E415-B70D-4453-AFE7-A0964C4B162F}", "Skip Silence"},
    {effect_class, "{CB592C20-2E33-4972-925F-3FBB6BDBA9BF}", "Hard -6dB limiter"},
    {effect_class, "{11B13A25-C282-41F6-B1F0-CEB7ECBCEAA8}", "Advanced Limiter"},
    {"{0639283E-3004-4E5C-B1B3-6DFF08A79284}", "", ""},
    {"{10BB3EBD-DDF7-4975-A3CC-23084829453E}", "", ""},
    {effect_class, "{E24420A0-5DC6-4EE1-8AE2-02452E8D8DFB}", "Move stereo to rear channels"},
    {effect_class, "{7AAB4CE8-414A-427E-8228-78CD4A47388F}", "Convert stereo to 4 channels"},
    {effect_class, "{45BAE3C0-10B1-4008-BAAC-C5E6CEB06BA2}", "Reverse stereo channels"},
    {effect_class, "{F661D118-5627-40AD-AB31-CCCF71A4819D}", "Convert mono to stereo"},
    {effect_class, "{AD158637-3B75-4749-A285-50362DCAF461}", "Crossfader"},
    {effect_class, "{66131A69-35E4-4323-83B0-0737595D8507}", "Upmix to 7.1"},
    {effect_class, "{ABA20225-956A-45D9-93D6-9FDC8B9B4633}", "Upmix to 5.1"},
    {effect_class, "{421C3E6E-F642-465D-8DBD-DEE5287561D6}", "Resampler (RetroArch)"},
    {effect_class, "{EFC441DD-C7B4-4F34-974A-D3058F3A1BDE}", "Downmix channels to mono"},
    {effect_class, "{866233BB-C466-43E6-AFC4-8B7BE563D912}", "Downmix channels to stereo"},
    {effect_class, "{4D26D35C-5DA8-4F9C-AE8F-5A4C8B8FEE40}", "Resampler (dBpoweramp/SSRC)"},
    {effect_class, "{D487D723-FD8C-4106-9023-5620AEA0A885}", "Meier Crossfeed"},
    {layout_class, "{8D7DED25-A094-49BF-810C-863F522D77EF}", ""},
    {layout_class, "{B3BDC598-C578-4662-8288-D177B2155DB2}", ""},
};

template <class Factory>
std::string identity_of(Factory& factory) {
    velmora::guid identity{};
    factory.get_identity(&identity);
    return host::to_text(identity);
}

service_row describe(velmora::service_factory& record) {
    const auto service = host::instance_of(record);
    service_row row{host::to_text(*record.class_id), "", ""};
    if (const auto effect = host::query_as<velmora::effect_factory>(*service)) {
        row.identity = identity_of(*effect);
        host::text name;
        effect->get_name(&name);
        row.name = name.str();
    } else if (const auto hidden = host::query_as<velmora::layout_effect_factory>(*service)) {
        row.identity = identity_of(*hidden);
    }
    return row;
}

void PrintTo(const service_row& row, std::ostream* out) {
    *out << row.class_id << ' ' << row.identity << ' ' << row.name;
}

TEST(ServiceList, HoldsTheServicesInTheirOrder) {
    std::vector<service_row> found;
    for (velmora::service_factory* const record : built_module().services()) {
        found.push_back(describe(*record));
    }
    EXPECT_EQ(found.size(), 19U);
    EXPECT_EQ(found, expected_services);
}

TEST(ServiceList, ServicesAreStaticAndCountNothing) {
    for (velmora::service_factory* const record : built_module().services()) {
        velmora::service* first = nullptr;
        record->get_instance(&first);
        velmora::service* second = first; // given back by the next call
        record->get_instance(&second);
        EXPECT_EQ(first, second);
        EXPECT_EQ(first->add_ref(), 1U);
        EXPECT_EQ(first->release(), 1U);
        EXPECT_EQ(first->release(), 1U);
    }
}

TEST(ComponentVersion, SaysWhatTheModuleIs) {
    const auto version = testing_support::find_service<velmora::component_version>();
    host::text answer;
    version->get_component_name(&answer);
    EXPECT_EQ(answer.str(), "Brellix");
    version->get_version(&answer);
    EXPECT_EQ(answer.str(), "2.0 beta 12");
    version->get_about(&answer);
    EXPECT_EQ(answer.str(), "Standard effects for Velmora.\n"
                            "By the two authors of Brellix.\n"
                            "Advanced Limiter: thanks to its author.\n"
                            "RetroArch resampler: the RetroArch team, 2010-2018.");
    built_module().entry().set_module_names("a path", "the file name");
    version->get_file_name(&answer);
    EXPECT_EQ(answer.str(), "the file name");
}

} // namespace
