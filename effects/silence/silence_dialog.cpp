#include "effects/silence/silence_dialog.h"

#include <algorithm>

namespace kelvane {

namespace {

constexpr std::int32_t lowest_threshold_db = skip_silence_settings::lowest_dialog_threshold_db;

} // namespace

int minimum_position(std::uint32_t minimum_ms) {
    return static_cast<int>(std::clamp<std::int64_t>(minimum_ms, lowest_minimum_position, highest_minimum_position));
}

int threshold_position(std::int32_t threshold_db) {
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{threshold_db} - lowest_threshold_db,
                                                     lowest_threshold_position, highest_threshold_position));
}

std::uint32_t minimum_ms_at(int position) {
    return static_cast<std::uint32_t>(position);
}

std::int32_t threshold_db_at(int position) {
    return position + lowest_threshold_db;
}

} // namespace kelvane
