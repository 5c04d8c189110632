// What the stand-in host answers to the module.
#pragma once

#include "velmora/host_api.h"

#include <functional>
#include <mutex>
#include <string_view>
#include <thread>

namespace host {

/// The thread that makes the object is the main thread.
class api final : public velmora::host_api {
public:
    /// Takes one line of UTF-8 without its end. Called from any thread, by one at a time.
    using console = std::function<void(std::string_view line)>;

    explicit api(console print) : print_(std::move(print)) {}

    bool is_main_thread() override { return std::this_thread::get_id() == main_thread_; }
    void print_console(const char* utf8, std::size_t length) override;

private:
    std::mutex printing_;
    console print_;
    std::thread::id main_thread_ = std::this_thread::get_id();
};

} // namespace host
