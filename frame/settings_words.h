// An effect's settings in words, for programs that speak with people.
#pragma once

#include "velmora/guid.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvane {

/// What is known of one field, each as text.
struct setting_field {
    std::string name;        ///< lower case with underscores
    std::string unit;        ///< empty for a number without one
    std::string range;       ///< the values that are taken
    std::string meaning;     ///< one line
    bool takes_rest = false; ///< the value may hold commas: among others it comes last and takes what is left
};

/// No such field, or a value that it does not take; the text says which values it takes.
class setting_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The settings of one effect. Payloads are those of its presets; a malformed one is read as the effect reads it, or
/// refused as the effect refuses it, with `velmora_io::exception_io_data`.
class settings_words {
public:
    virtual ~settings_words() = default;

    virtual const velmora::guid& effect() const = 0;
    virtual std::vector<setting_field> fields() const = 0;

    /// The payload of the effect's default preset.
    virtual std::vector<std::byte> defaults() const = 0;

    /// The fields' values, in the order of the fields.
    virtual std::vector<std::string> values(std::span<const std::byte> payload) const = 0;

    /// What a person should know of these settings at a sample rate; empty when there is nothing.
    virtual std::string warning(std::span<const std::byte> payload, std::uint32_t rate_hz) const = 0;

    /// The rate in Hz that these settings want audio at `rate_hz` to leave with: the same, unless the effect converts.
    virtual std::uint32_t wanted_rate_hz(std::span<const std::byte> payload, std::uint32_t rate_hz) const = 0;

    /// The payload with one field changed. Throws `setting_error`.
    virtual std::vector<std::byte> with(std::span<const std::byte> payload, std::string_view field,
                                        std::string_view value) const = 0;
};

/// A field of the struct `Settings`: how it is told, shown and changed. `change` answers false for a value that the
/// field does not take.
template <class Settings>
struct described_field {
    setting_field description;
    std::function<std::string(const Settings&)> show;
    std::function<bool(Settings&, std::string_view)> change;
};

/// The words of a plain struct with `identity`, `read` and `write`.
template <class Settings>
class struct_words final : public settings_words {
public:
    /// What there is to say of settings at a sample rate in Hz, or nothing.
    using warner = std::function<std::string(const Settings&, std::uint32_t rate_hz)>;

    /// What settings make of a sample rate, both in Hz.
    using converter = std::function<std::uint32_t(const Settings&, std::uint32_t rate_hz)>;

    explicit struct_words(std::vector<described_field<Settings>> fields, warner warn = nullptr,
                          converter convert = nullptr)
        : fields_(std::move(fields)), warn_(std::move(warn)), convert_(std::move(convert)) {}

    const velmora::guid& effect() const override { return Settings::identity; }

    std::vector<setting_field> fields() const override {
        std::vector<setting_field> descriptions;
        for (const auto& field : fields_) {
            descriptions.push_back(field.description);
        }
        return descriptions;
    }

    std::vector<std::byte> defaults() const override { return Settings{}.write(); }

    std::vector<std::string> values(std::span<const std::byte> payload) const override {
        const Settings settings = Settings::read(payload);
        std::vector<std::string> shown;
        for (const auto& field : fields_) {
            shown.push_back(field.show(settings));
        }
        return shown;
    }

    std::string warning(std::span<const std::byte> payload, std::uint32_t rate_hz) const override {
        return warn_ ? warn_(Settings::read(payload), rate_hz) : std::string();
    }

    std::uint32_t wanted_rate_hz(std::span<const std::byte> payload, std::uint32_t rate_hz) const override {
        return convert_ ? convert_(Settings::read(payload), rate_hz) : rate_hz;
    }

    std::vector<std::byte> with(std::span<const std::byte> payload, std::string_view field,
                                std::string_view value) const override {
        Settings settings = Settings::read(payload);
        const auto& found = find(field);
        if (!found.change(settings, value)) {
            throw setting_error(std::string(field) + " takes " + found.description.range + ", not \"" +
                                std::string(value) + "\"");
        }
        return settings.write();
    }

private:
    const described_field<Settings>& find(std::string_view name) const {
        std::string known;
        for (const auto& field : fields_) {
            if (field.description.name == name) {
                return field;
            }
            known += (known.empty() ? "" : ", ") + field.description.name;
        }
        throw setting_error("there is no setting \"" + std::string(name) + "\"; there is " + known);
    }

    std::vector<described_field<Settings>> fields_;
    warner warn_;
    converter convert_;
};

/// "LOWEST to HIGHEST", as ranges are told.
std::string range_text(std::int64_t lowest, std::int64_t highest);

/// A whole decimal number of the type's range; nothing for any other text.
std::optional<std::int64_t> parse_number(std::string_view text);

/// A field that holds a number of the type `Number` (32 bits), shown and taken in decimal.
template <class Settings, class Number>
described_field<Settings> number_field(setting_field description, Number Settings::*member) {
    using limits = std::numeric_limits<Number>;
    return {std::move(description), [member](const Settings& settings) { return std::to_string(settings.*member); },
            [member](Settings& settings, std::string_view text) {
                const auto number = parse_number(text);
                const bool fits = number && *number >= limits::min() && *number <= limits::max();
                if (fits) {
                    settings.*member = static_cast<Number>(*number);
                }
                return fits;
            }};
}

/// A field that is on or off, shown and taken as "yes" and "no".
template <class Settings>
described_field<Settings> yes_no_field(setting_field description, bool Settings::*member) {
    return {std::move(description), [member](const Settings& settings) { return settings.*member ? "yes" : "no"; },
            [member](Settings& settings, std::string_view text) {
                const bool is_taken = text == "yes" || text == "no";
                if (is_taken) {
                    settings.*member = text == "yes";
                }
                return is_taken;
            }};
}

} // namespace kelvane
