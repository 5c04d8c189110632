#include "host/program/console.h"

#include "host/platform/program.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

namespace host {

namespace {

constexpr std::chrono::milliseconds drawing_interval(100);
constexpr int bar_columns = 40;

} // namespace

void print_notice(std::string_view line) {
    fmt::print(stderr, "{}\n", line);
}

void print_error(std::string_view message) {
    fmt::print(stderr, "kelvane-host: {}\n", message);
}

progress_bar::progress_bar() : visible_(is_error_stream_a_terminal()) {}

progress_bar::~progress_bar() {
    wipe();
}

void progress_bar::show(double done_s, double total_s) {
    const auto now = std::chrono::steady_clock::now();
    if (!visible_ || now < next_drawing_) {
        return;
    }
    next_drawing_ = now + drawing_interval;
    const double part = total_s > 0.0 ? std::min(done_s / total_s, 1.0) : 0.0;
    const auto filled = static_cast<int>(part * bar_columns);
    fmt::print(stderr, "\r[{:#<{}}{:<{}}] {:3.0f} %  {:.0f} s", "", filled, "", bar_columns - filled, 100.0 * part,
               done_s);
    std::fflush(stderr);
}

void progress_bar::print_above(std::string_view line) {
    wipe();
    print_notice(line);
}

void progress_bar::wipe() const {
    if (visible_) {
        fmt::print(stderr, "\r{:<78}\r", "");
        std::fflush(stderr);
    }
}

} // namespace host
