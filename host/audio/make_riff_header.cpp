#include "host/audio/byte_writer.h"
#include "host/audio/riff_format_chunk.h"
#include "host/audio/riff_header.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::uint32_t unknown_size = 0xFFFFFFFF;
constexpr std::uint32_t sizes_content_bytes = 28;
constexpr std::size_t chunk_header_bytes = 8;
constexpr std::size_t bytes_before_format = 12 + chunk_header_bytes + sizes_content_bytes;

/// What tells the coding: the format and, behind anything but PCM, the count of frames.
std::vector<std::byte> make_format_chunks(const audio_format& format, const sample_layout& samples,
                                          std::uint64_t frames) {
    const std::vector<std::byte> content = make_riff_format(format, samples);
    byte_writer chunks;
    chunks.text("fmt ");
    chunks.number(static_cast<std::uint32_t>(content.size()));
    chunks.bytes(content);
    if (samples.is_float) {
        chunks.text("fact");
        chunks.number(std::uint32_t{4});
        chunks.number(static_cast<std::uint32_t>(std::min<std::uint64_t>(frames, unknown_size)));
    }
    return chunks.take();
}

void append_wide_sizes(byte_writer& header, std::uint64_t riff_size_bytes, std::uint64_t data_size_bytes,
                       std::uint64_t frames) {
    header.text("ds64");
    header.number(sizes_content_bytes);
    header.number(riff_size_bytes);
    header.number(data_size_bytes);
    header.number(frames);
    header.number(std::uint32_t{0}); // no other chunk is that large
}

/// Keeps the place of the wide sizes free, for the case that the file grows to need them.
void append_junk(byte_writer& header) {
    header.text("JUNK");
    header.number(sizes_content_bytes);
    header.zeros(sizes_content_bytes);
}

} // namespace

std::vector<std::byte> make_riff_header(const audio_format& format, const sample_layout& samples,
                                        std::uint64_t data_size_bytes, std::uint64_t limit_bytes) {
    const std::uint64_t frames = data_size_bytes / (format.channels * samples.bytes);
    const std::vector<std::byte> format_chunks = make_format_chunks(format, samples, frames);
    const std::uint64_t behind_format_bytes = chunk_header_bytes + data_size_bytes + data_size_bytes % 2;
    const std::uint64_t riff_size_bytes = bytes_before_format + format_chunks.size() + behind_format_bytes - 8;
    const bool is_wide = riff_size_bytes > limit_bytes;
    byte_writer header;
    header.text(is_wide ? "RF64" : "RIFF");
    header.number(is_wide ? unknown_size : static_cast<std::uint32_t>(riff_size_bytes));
    header.text("WAVE");
    if (is_wide) {
        append_wide_sizes(header, riff_size_bytes, data_size_bytes, frames);
    } else {
        append_junk(header);
    }
    header.bytes(format_chunks);
    header.text("data");
    header.number(is_wide ? unknown_size : static_cast<std::uint32_t>(data_size_bytes));
    return header.take();
}

} // namespace host
