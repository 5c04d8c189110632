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

double audio_math_calculate_peak(const double* samples, size_t count) {
    double peak = 0.0;
    for (size_t i = 0; i < count; ++i) {
        const double magnitude = std::fabs(samples[i]);
        if (magnitude > peak) {
            peak = magnitude;
        }
    }
    return peak;
}
