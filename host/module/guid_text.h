// GUIDs in the registry's text form.
#pragma once

#include "velmora/guid.h"

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// "{0D048731-8AA8-4704-8AD6-189E24D48C88}"
std::string to_text(const velmora::guid& id);

/// The inverse: with or without braces, in capitals or not. Nothing for any other text.
std::optional<velmora::guid> parse_guid(std::string_view text);

} // namespace host
