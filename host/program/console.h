// What the program writes for a person on standard error.
#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

namespace host {

/// A line that is not part of a command's result: a notice of the module, say.
void print_notice(std::string_view line);

/// "kelvane-host: " and the message, on one line whatever characters it has.
void print_error(std::string_view message);

/// A bar on the terminal, redrawn in place some times a second. Shows nothing where standard error is no terminal, and
/// wipes itself at the end.
class progress_bar {
public:
    progress_bar();
    ~progress_bar();
    progress_bar(const progress_bar&) = delete;
    progress_bar& operator=(const progress_bar&) = delete;

    /// Both in seconds of audio; `total_s` may be too small, or 0 when nobody knows.
    void show(double done_s, double total_s);

    /// A notice above the bar.
    void print_above(std::string_view line);

    /// Clears the bar's line, so that other output can stand there.
    void wipe() noexcept;

private:
    bool visible_;
    std::size_t drawn_columns_ = 0; ///< how far the bar's line reaches: a terminal may have no more
    std::chrono::steady_clock::time_point next_drawing_{};
};

} // namespace host
