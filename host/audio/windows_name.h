// Names that Windows has no files by.
#pragma once

#include <string_view>

namespace host {

/// Whether Windows takes the name, UTF-8 without folders, for that of a file: it keeps some signs for itself, and the
/// names of its devices whatever their extension. It drops dots and spaces at an end, so they are refused as well.
bool is_windows_file_name(std::string_view name);

} // namespace host
