// Sample-rate converters under one roof, for what measures them.
#pragma once

#include <cstddef>
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

/// A running converter.
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

/// All that comes out for the whole signal, which goes in in blocks; the stream is not ended.
std::vector<double> convert_all(converter& used, std::span<const double> interleaved, std::size_t channels);

} // namespace bench
