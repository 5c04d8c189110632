// What the built module says to a host.
#pragma once

#include "host/objects/api.h"
#include "tests/support/built_module.h"

#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// A host whose console is kept, for as long as this lives.
class kept_console {
public:
    kept_console() : api_([this](std::string_view line) { lines.emplace_back(line); }) { enter_built_module(&api_); }
    ~kept_console() { enter_built_module(nullptr); }
    kept_console(const kept_console&) = delete;
    kept_console& operator=(const kept_console&) = delete;

    std::vector<std::string> lines;

private:
    host::api api_;
};

} // namespace testing_support
