#include "frame/settings_store.h"

#include "frame/exceptions.h"
#include "frame/limited_reader.h"
#include "frame/never_abort.h"
#include "tests/support/allocations.h"
#include "tests/support/memory_stream.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <string>

namespace kelvane {
namespace {

using testing_support::memory_reader;
using testing_support::memory_writer;
using testing_support::thrown_text;

constexpr auto truncated = "Unsupported format or corrupted file";

/// A text as a stored value.
class text_variable final : public config_variable {
public:
    text_variable(std::uint32_t number, std::string text) : value(std::move(text)), number_(number) {}

    velmora::guid identity() const override { return {number_, 0, 0, {}}; }
    void write(velmora::settings_writer& stream, velmora::abort_signal* abort) override {
        if (!value.empty()) {
            stream.write(value.data(), value.size(), abort);
        }
    }
    void read(velmora::settings_reader& stream, velmora::abort_signal* abort) override {
        value.assign(bytes_to_read, '.');
        value.resize(stream.read(value.data(), value.size(), abort));
    }

    std::string value;
    std::size_t bytes_to_read = 1000;

private:
    std::uint32_t number_;
};

/// A record by hand: 16 bytes of identity, the size, the payload.
std::string record(char number, const std::string& payload) {
    return std::string(1, number) + std::string(15, '\0') + static_cast<char>(payload.size()) + std::string(3, '\0') +
           payload;
}

TEST(SettingsStore, WritesARecordForEachVariableInTheirOrder) {
    text_variable second(2, "two");
    text_variable first(1, "");
    settings_store store;
    store.register_for_saving(second);
    store.register_for_saving(first);
    memory_writer stream;
    store.save(stream, &never_abort_signal());
    EXPECT_EQ(stream.written, record(2, "two") + record(1, ""));
}

TEST(SettingsStore, WithoutVariablesItWritesNothing) {
    memory_writer stream;
    settings_store().save(stream, &never_abort_signal());
    EXPECT_EQ(stream.written, "");
}

TEST(SettingsStore, ReadsEachRecordIntoItsVariableAndPassesOverOthers) {
    text_variable first(1, "old");
    text_variable second(2, "old");
    settings_store store;
    store.register_for_loading(first);
    store.register_for_loading(second);
    memory_reader stream(record(9, "unknown") + record(2, "two") + record(8, "") + record(1, "one"));
    store.load(stream, &never_abort_signal());
    EXPECT_EQ(first.value, "one");
    EXPECT_EQ(second.value, "two");
}

TEST(SettingsStore, AVariableSeesItsOwnRecordOnlyAndMayLeaveSomeOfIt) {
    text_variable greedy(1, "");
    text_variable modest(2, "");
    modest.bytes_to_read = 1;
    settings_store store;
    store.register_for_loading(greedy);
    store.register_for_loading(modest);
    memory_reader stream(record(2, "two") + record(1, "one") + record(9, "rest"));
    store.load(stream, &never_abort_signal());
    EXPECT_EQ(greedy.value, "one");
    EXPECT_EQ(modest.value, "t");
}

TEST(SettingsStore, EveryCallOfTheStreamGetsTheSignal) {
    text_variable first(1, "one");
    settings_store store;
    store.register_for_saving(first);
    store.register_for_loading(first);
    const std::set<velmora::abort_signal*> given{&never_abort_signal()};
    memory_writer written;
    store.save(written, &never_abort_signal());
    EXPECT_EQ(written.signals, given);
    memory_reader read(written.written + record(9, "unknown"));
    store.load(read, &never_abort_signal());
    EXPECT_EQ(read.signals, given);
}

TEST(SettingsStore, AStreamThatEndsWithinAnIdentityEndsQuietlyAndLaterOnItIsTruncated) {
    const std::string whole = record(9, "abc");
    for (std::size_t bytes = 0; bytes <= whole.size(); ++bytes) {
        memory_reader stream(whole.substr(0, bytes));
        const bool ends_within_a_record = bytes >= 16 && bytes < whole.size();
        EXPECT_EQ(thrown_text<velmora_io::exception_io_data_truncation>(
                      [&] { settings_store().load(stream, &never_abort_signal()); }),
                  ends_within_a_record ? truncated : "nothing thrown")
            << bytes;
    }
}

TEST(SettingsStore, ASizeFarPastTheEndIsTruncatedAndNeverAllocated) {
    std::string claims_4_gib = record(9, "abc");
    claims_4_gib.replace(16, 4, 4, '\xFF');
    memory_reader stream(claims_4_gib);
    testing_support::forget_largest_request();
    EXPECT_EQ(thrown_text<std::exception>([&] { settings_store().load(stream, &never_abort_signal()); }), truncated);
    EXPECT_LT(testing_support::largest_request_bytes(), 1000U);
}

TEST(SettingsStore, ARecordHoldsAtMost32BitsOfBytes) {
    EXPECT_EQ(record_size(0xFFFFFFFF), 0xFFFFFFFFU);
    EXPECT_EQ(thrown_text<mox::exception_overflow>([] { record_size(0x1'0000'0000); }), "Overflow");
}

TEST(LimitedReader, EndsWithItsStretch) {
    memory_reader stream("abcdef");
    limited_reader stretch(stream, 4);
    char buffer[8] = {};
    EXPECT_THROW(stretch.read_exact(buffer, 5, nullptr), velmora_io::exception_io_data_truncation);
    stretch.read_exact(buffer, 1, nullptr);
    EXPECT_EQ(buffer[0], 'a');
    EXPECT_EQ(stretch.skip_exact(1, nullptr), 2U); // the position, not the count
    EXPECT_THROW(stretch.skip_exact(3, nullptr), velmora_io::exception_io_data_truncation);
    EXPECT_EQ(stretch.read(buffer, 8, nullptr), 2U);
    EXPECT_EQ(std::string(buffer, 2), "cd");
    EXPECT_EQ(stretch.skip(1, nullptr), 0U);
    EXPECT_EQ(stream.read(buffer, 1, nullptr), 1U);
    EXPECT_EQ(buffer[0], 'e');
}

} // namespace
} // namespace kelvane
