#include "host/program/console.h"

#include "host/platform/program.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace host {

namespace {

constexpr std::chrono::milliseconds drawing_interval(100);
constexpr int bar_columns = 40;

/// What a person typed, and what a system answers, may have line breaks and signs that a terminal obeys.
std::string on_one_line(std::string_view message) {
    std::string line(message);
    const auto is_control = [](char letter) { return (letter >= 0 && letter < ' ') || letter == '\x7F'; };
    std::replace_if(line.begin(), line.end(), is_control, '?');
    return line;
}

} // namespace

void print_notice(std::string_view line) {
    fmt::print(stderr, "{}\n", line);
}

void print_error(std::string_view message) {
    fmt::print(stderr, "kelvane-host: {}\n", on_one_line(message));
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
    const std::string drawing =
        fmt::format("[{:#<{}}{:<{}}] {:3.0f} %  {:.0f} s", "", filled, "", bar_columns - filled, 100.0 * part, done_s);
    fmt::print(stderr, "\r{}", drawing);
    std::fflush(stderr);
    drawn_columns_ = drawing.size();
}

void progress_bar::print_above(std::string_view line) {
    wipe();
    print_notice(line);
}

void progress_bar::wipe() noexcept {
    if (drawn_columns_ > 0) {
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(drawn_columns_), "");
        std::fflush(stderr);
        drawn_columns_ = 0;
    }
}

} // namespace host
