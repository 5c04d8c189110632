// A text of the host's library, taken by the module.
#pragma once

#include "velmora/string_receiver.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvane {

class received_text final : public velmora::string_receiver {
public:
    void append_text(const char* utf8, std::size_t length) override { text.append(as_view(utf8, length)); }
    const char* get_text() override { return text.c_str(); }
    void set_text(const char* utf8, std::size_t length) override { text.assign(as_view(utf8, length)); }

    std::string text;

private:
    static std::string_view as_view(const char* utf8, std::size_t length) {
        return length == velmora::text_is_terminated ? std::string_view(utf8) : std::string_view(utf8, length);
    }
};

} // namespace kelvane
