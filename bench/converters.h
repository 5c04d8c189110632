// Sample-rate converters under one roof: ours and its peers.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace bench {

/// What a converter is made for.
struct conversion {
    std::uint32_t input_hz;
    std::uint32_t output_hz;
    std::uint32_t channels;

    double ratio() const { return static_cast<double>(output_hz) / input_hz; }
};

/// A running converter. A peer takes and gives the samples in the form that suits it best: 32-bit floats, save for
/// libswresample and libsoxr at their full precision, which take doubles as ours does.
class converter {
public:
    virtual ~converter() = default;

    /// Brings the frames into the converter's form. Not part of what is timed.
    virtual void load(std::span<const double> interleaved) = 0;

    /// Converts what was loaded, as the next piece of one stream; answers the frames that came out.
    virtual std::size_t run() = 0;

    /// The frames that came out of the last run, as doubles.
    virtual std::vector<double> output() const = 0;
};

/// A converter at one of its settings.
struct converter_kind {
    std::string family;
    std::string setting;
    std::function<std::unique_ptr<converter>(const conversion&)> make;

    std::string name() const { return family + " " + setting; }
};

/// Each level of ours, by its name.
std::vector<converter_kind> own_converters();

/// libswresample with the taps of our levels, zita-resampler, speexdsp, libsamplerate and libsoxr at their settings. To
/// make one throws std::runtime_error when the library refuses.
std::vector<converter_kind> peer_converters();

/// All output of the converter for the whole signal, in blocks of `block_frames`.
std::vector<double> convert_all(converter& used, std::span<const double> interleaved, std::size_t channels);

} // namespace bench
