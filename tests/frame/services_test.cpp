#include "frame/services.h"

#include "frame/service_list.h"
#include "velmora/component_version.h"
#include "velmora/effect_factory.h"
#include "velmora/file_name_check.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kelvane {
namespace {

/// A service that does not have the interface under which it is registered.
class version_only final : public static_service<velmora::component_version> {
public:
    void get_file_name(velmora::string_receiver*) override {}
    void get_component_name(velmora::string_receiver*) override {}
    void get_version(velmora::string_receiver*) override {}
    void get_about(velmora::string_receiver*) override {}
};

/// A counted service that outlives its last reference, to tell that it was the last.
class counted_service final : public velmora::service {
public:
    std::uint32_t release() override {
        has_ended = has_ended || references == 1;
        return --references;
    }
    std::uint32_t add_ref() override { return ++references; }
    bool query(velmora::service** out, const velmora::guid* asked_class) override {
        return answer_query(*this, {velmora::effect_factory::class_id}, *asked_class, out);
    }

    std::uint32_t references = 1;
    bool has_ended = false;
};

TEST(CountedService, AskedForAgainThroughItsOnlyReferenceItLivesOn) {
    counted_service service;
    velmora::service* out = &service;
    EXPECT_TRUE(service.query(&out, &velmora::effect_factory::class_id));
    EXPECT_EQ(out, &service);
    EXPECT_EQ(service.references, 1U); // the one that it held went, the new one came
    EXPECT_FALSE(service.has_ended);
}

TEST(ServiceRecordDeathTest, AServiceWithoutItsInterfaceStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    static service_record<version_only, velmora::file_name_check> misplaced;
    velmora::service* out = nullptr;
    EXPECT_DEATH(misplaced.get_instance(&out), "VELMORA_BugCheck: forced cast failure");
}

TEST(ServiceRecord, LinksItselfAtTheHead) {
    velmora::service_factory* const before = service_list::head();
    static service_record<version_only, velmora::component_version> first;
    static service_record<version_only, velmora::component_version> second;
    EXPECT_EQ(service_list::head(), &second);
    EXPECT_EQ(second.next, &first);
    EXPECT_EQ(first.next, before);
    EXPECT_EQ(*first.class_id, velmora::component_version::class_id);
}

TEST(StaticService, AnswersToItsIdentityAndIsNeverCounted) {
    version_only service;
    EXPECT_EQ(service.add_ref(), 1U);
    EXPECT_EQ(service.release(), 1U);
    EXPECT_EQ(service.release(), 1U);
    velmora::service* out = nullptr;
    EXPECT_TRUE(service.query(&out, &velmora::component_version::class_id));
    EXPECT_EQ(out, &service);
    EXPECT_FALSE(service.query(&out, &velmora::effect_factory::class_id));
    EXPECT_EQ(out, &service);
}

/// A held service that cannot be given back.
class unreleasable final : public velmora::service {
public:
    std::uint32_t release() override { throw std::runtime_error("not released"); }
    std::uint32_t add_ref() override { return 2; }
    bool query(velmora::service**, const velmora::guid*) override { return false; }
};

TEST(StoreReference, WhatCannotBeGivenBackStays) {
    unreleasable held;
    version_only given;
    velmora::service* out = &held;
    EXPECT_THROW(store_reference(&out, service_ptr<velmora::service>(&given)), std::runtime_error);
    EXPECT_EQ(out, &held);
}

} // namespace
} // namespace kelvane
