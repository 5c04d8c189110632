// A text that the module fills.
#pragma once

#include "velmora/string_receiver.h"

#include <string>

namespace host {

class text final : public velmora::string_receiver {
public:
    void append_text(const char* utf8, std::size_t length) override;
    const char* get_text() override { return held_.c_str(); }
    void set_text(const char* utf8, std::size_t length) override;

    const std::string& str() const noexcept { return held_; }

private:
    std::string held_;
};

} // namespace host
