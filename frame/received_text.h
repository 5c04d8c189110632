// A text of the host's library, taken by the module.
#pragma once

#include "velmora/string_receiver.h"

#include <cstddef>
#include <string>

namespace kelvane {

class received_text final : public velmora::string_receiver {
public:
    void append_text(const char* utf8, std::size_t length) override { text.append(utf8, length); }
    const char* get_text() override { return text.c_str(); }
    void set_text(const char* utf8, std::size_t length) override { text.assign(utf8, length); }

    std::string text;
};

} // namespace kelvane
