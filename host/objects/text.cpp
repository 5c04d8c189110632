#include "host/objects/text.h"

#include <string_view>

namespace host {

namespace {

std::string_view as_view(const char* utf8, std::size_t length) {
    return length == velmora::text_is_terminated ? std::string_view(utf8) : std::string_view(utf8, length);
}

} // namespace

void text::append_text(const char* utf8, std::size_t length) {
    held_.append(as_view(utf8, length));
}

void text::set_text(const char* utf8, std::size_t length) {
    held_ = std::string(as_view(utf8, length));
}

} // namespace host
