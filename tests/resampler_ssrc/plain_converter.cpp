#include "tests/resampler_ssrc/plain_converter.h"

#include <algorithm>

namespace plain_form {

converter::converter(std::uint64_t input_hz, std::uint64_t output_hz)
    : design_(input_hz, output_hz), prototype_(design_.prototype()), fft_(design_.fft_size),
      spectrum_(design_.fft_size), carry_(design_.fft_size / 2), to_discard_(design_.discard_frames) {
    const std::vector<double> filter = design_.filter();
    for (std::size_t n = 0; n < filter.size(); ++n) {
        spectrum_[n] = filter[n] * 2.0 / static_cast<double>(design_.fft_size);
    }
    fft_.forward(spectrum_);
    if (design_.goes_up) {
        // The stream's start meets the middle of the prototype.
        const std::uint64_t middle = (design_.stage_length - 1) / 2;
        const std::uint64_t silent = (middle + design_.phases - 1) / design_.phases;
        stage_.assign(silent, 0.0);
        position_ticks_ = silent * design_.phases - middle;
    } else {
        stage_.assign(design_.taps_per_phase + 1, 0.0);
    }
}

std::size_t converter::chunk_frames() const {
    const std::uint64_t half = design_.fft_size / 2;
    if (design_.goes_up) {
        const std::uint64_t rate = design_.output_hz * design_.osf;
        return (half * design_.input_hz + rate - 1) / rate + 1 + design_.taps_per_phase - stage_.size();
    }
    return (half - offset_ - 1) / design_.osf + 1;
}

std::vector<double> converter::process(const std::vector<double>& input, bool is_last) {
    queue_.insert(queue_.end(), input.begin(), input.end());
    frames_in_ += input.size();
    const std::uint64_t promised = frames_in_ * design_.output_hz / design_.input_hz;
    std::vector<double> output;
    while (queue_.size() >= chunk_frames() || (is_last && frames_out_ < promised)) {
        queue_.resize(std::max(queue_.size(), chunk_frames())); // silence behind the end
        const auto end = queue_.begin() + static_cast<std::ptrdiff_t>(chunk_frames());
        const std::vector<double> chunk(queue_.begin(), end);
        queue_.erase(queue_.begin(), end);
        emit(design_.goes_up ? up(chunk) : down(chunk), output);
    }
    if (is_last && frames_out_ > promised) {
        output.resize(output.size() - (frames_out_ - promised));
    }
    return output;
}

void converter::emit(const std::vector<double>& made, std::vector<double>& to) {
    const std::uint64_t dropped = std::min<std::uint64_t>(to_discard_, made.size());
    to_discard_ -= dropped;
    frames_out_ += made.size() - dropped;
    to.insert(to.end(), made.begin() + static_cast<std::ptrdiff_t>(dropped), made.end());
}

double converter::stage_value() const {
    const std::uint64_t frame = (position_ticks_ + design_.phases - 1) / design_.phases;
    const std::uint64_t row = frame * design_.phases - position_ticks_;
    double sum = 0.0;
    for (std::size_t j = 0; j < design_.taps_per_phase && row + j * design_.phases < prototype_.size(); ++j) {
        sum += prototype_[row + j * design_.phases] * stage_[frame + j];
    }
    return sum;
}

void converter::filter(std::vector<double>& values) {
    fft_.forward(values);
    values[0] *= spectrum_[0];
    values[1] *= spectrum_[1];
    for (std::size_t i = 2; i < values.size(); i += 2) {
        const double re = values[i] * spectrum_[i] - values[i + 1] * spectrum_[i + 1];
        values[i + 1] = values[i] * spectrum_[i + 1] + values[i + 1] * spectrum_[i];
        values[i] = re;
    }
    fft_.backward(values);
}

std::vector<double> converter::up(const std::vector<double>& chunk) {
    stage_.insert(stage_.end(), chunk.begin(), chunk.end());
    const std::size_t half = design_.fft_size / 2;
    std::vector<double> values(design_.fft_size);
    for (std::size_t i = 0; i < half; ++i) {
        values[i] = stage_value();
        position_ticks_ += design_.common_hz / design_.filter_hz;
    }
    const std::uint64_t passed = position_ticks_ / design_.phases;
    stage_.erase(stage_.begin(), stage_.begin() + static_cast<std::ptrdiff_t>(passed));
    position_ticks_ -= passed * design_.phases;
    filter(values);
    std::vector<double> made;
    std::size_t i = offset_;
    std::size_t carried = 0;
    for (; i < half; i += design_.osf) {
        made.push_back(values[i] + carry_[carried++]);
    }
    offset_ = i - half;
    std::fill(carry_.begin(), carry_.end(), 0.0);
    for (carried = 0; i < design_.fft_size; i += design_.osf) {
        carry_[carried++] = values[i];
    }
    return made;
}

std::vector<double> converter::down(const std::vector<double>& chunk) {
    const std::size_t half = design_.fft_size / 2;
    std::vector<double> values(design_.fft_size);
    std::size_t at = offset_;
    for (const double frame : chunk) {
        values[at] = frame;
        at += design_.osf;
    }
    offset_ = at - half;
    filter(values);
    for (std::size_t i = 0; i < half; ++i) {
        stage_.push_back(values[i] + carry_[i]);
        carry_[i] = values[half + i];
    }
    std::vector<double> made;
    while ((position_ticks_ + design_.phases - 1) / design_.phases < half + 1) {
        made.push_back(stage_value());
        position_ticks_ += design_.common_hz / design_.output_hz;
    }
    stage_.erase(stage_.begin(), stage_.begin() + static_cast<std::ptrdiff_t>(half));
    position_ticks_ -= half * design_.phases;
    return made;
}

} // namespace plain_form
