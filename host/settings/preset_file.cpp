#include "host/settings/preset_file.h"

#include "host/audio/binary_file.h"
#include "host/audio/pending_file.h"
#include "host/module/guid_text.h"
#include "host/module/hex_text.h"
#include "host/platform/path_text.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <span>
#include <string>

namespace host {

namespace {

/// Far more than an effect keeps, and little enough to be read at once whatever the file is.
constexpr std::uint64_t most_preset_file_bytes = 1'048'576;

std::string text_of(const std::filesystem::path& file) {
    binary_file bytes(file);
    std::string text(static_cast<std::size_t>(std::min(bytes.size_bytes(), most_preset_file_bytes)), '\0');
    text.resize(bytes.read(std::as_writable_bytes(std::span(text))));
    return text;
}

} // namespace

preset read_preset_file(const std::filesystem::path& file) {
    const auto json = nlohmann::json::parse(text_of(file), nullptr, false);
    const bool has_texts = json.is_object() && json.value("owner", nlohmann::json()).is_string() &&
                           json.value("payload", nlohmann::json()).is_string();
    const auto owner = has_texts ? parse_guid(json["owner"].get<std::string>()) : std::nullopt;
    const auto payload = has_texts ? parse_hex(json["payload"].get<std::string>()) : std::nullopt;
    if (!owner || !payload) {
        throw preset_file_error(fmt::format("{}: is no preset file", to_utf8(file)));
    }
    preset read;
    read.set_owner(&*owner);
    read.set_data(payload->data(), payload->size());
    return read;
}

void write_preset_file(const std::filesystem::path& file, const preset& written) {
    const nlohmann::ordered_json json{{"owner", to_text(written.owner())}, {"payload", to_hex(written.payload())}};
    pending_file pending(file); // a full disk leaves the old preset as it was
    std::ofstream stream(pending.temporary(), std::ios::binary);
    stream << json.dump(2) << '\n';
    stream.close();
    if (!stream) {
        throw preset_file_error(fmt::format("{}: cannot be written", to_utf8(file)));
    }
    pending.commit();
}

} // namespace host
