#include "quillet/quillet.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

void uBugCheck() {
    std::abort();
}

void uPrintCrashInfo_OnEvent(const char* text, size_t length) {
    std::fwrite(text, 1, length, stderr);
    std::fputc('\n', stderr);
    std::fflush(stderr);
}

void uPrintfV(velmora::string_receiver* out, const char* format, va_list arguments) {
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0) {
        throw std::invalid_argument("malformed format");
    }
    std::string text(static_cast<size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, arguments);
    out->set_text(text.data(), text.size() - 1);
}

namespace {

/// The larger one; the first for a second that is not a number.
double larger(double peak, double magnitude) {
    return magnitude > peak ? magnitude : peak;
}

} // namespace

double audio_math_calculate_peak(const double* samples, size_t count) {
    constexpr size_t lanes = 8; // one comparison does not wait for the one before it
    double peaks[lanes] = {};
    const size_t in_lanes = count - count % lanes;
    for (size_t i = 0; i < in_lanes; i += lanes) {
        for (size_t lane = 0; lane < lanes; ++lane) {
            peaks[lane] = larger(peaks[lane], std::fabs(samples[i + lane]));
        }
    }
    double peak = 0.0;
    for (const double lane_peak : peaks) {
        peak = larger(peak, lane_peak);
    }
    for (size_t i = in_lanes; i < count; ++i) {
        peak = larger(peak, std::fabs(samples[i]));
    }
    return peak;
}
