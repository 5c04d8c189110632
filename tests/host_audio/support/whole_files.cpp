#include "tests/host_audio/support/whole_files.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <iterator>
#include <random>

namespace testing_support {

std::vector<double> read_to_end(host::audio_reader& reader, std::size_t frames_at_a_time) {
    const std::size_t channels = reader.format().channels;
    std::vector<double> block(frames_at_a_time * channels);
    std::vector<double> samples;
    while (const std::size_t frames = reader.read(block)) {
        const auto end = block.begin() + static_cast<std::ptrdiff_t>(frames * channels);
        samples.insert(samples.end(), block.begin(), end);
    }
    return samples;
}

audio read_audio(const std::filesystem::path& file) {
    const auto reader = host::open_audio(file);
    return {reader->format(), read_to_end(*reader)};
}

void write_audio(const std::filesystem::path& file, const audio& content,
                 std::optional<host::sample_encoding> encoding) {
    const auto writer = host::create_audio(file, content.format, encoding);
    writer->write(content.samples);
    writer->commit();
}

std::string read_bytes(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write_bytes(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::vector<double> noise(std::size_t samples, double amplitude) {
    std::mt19937_64 random(1); // the same bits in every run
    std::uniform_real_distribution<double> value(-amplitude, amplitude);
    std::vector<double> made(samples);
    std::generate(made.begin(), made.end(), [&] { return value(random); });
    return made;
}

std::vector<std::uint64_t> bits_of(std::span<const double> samples) {
    std::vector<std::uint64_t> bits(samples.size());
    std::transform(samples.begin(), samples.end(), bits.begin(),
                   [](double sample) { return std::bit_cast<std::uint64_t>(sample); });
    return bits;
}

} // namespace testing_support
