#include "bench/ffmpeg_filter.h"

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/buffer.h>
#include <libavutil/frame.h>
#include <libavutil/mem.h>
}

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

namespace bench {

namespace {

void check(int answer, const char* asked) {
    if (answer < 0) {
        throw std::runtime_error(fmt::format("libavfilter: {} answered {}", asked, answer));
    }
}

AVFilterContext* add_filter(AVFilterGraph& graph, const char* filter, const char* name, const std::string& arguments) {
    AVFilterContext* made = nullptr;
    check(avfilter_graph_create_filter(&made, avfilter_get_by_name(filter), name, arguments.c_str(), nullptr, &graph),
          filter);
    return made;
}

std::string source_name(std::size_t input) {
    return fmt::format("in{}", input);
}

AVFilterInOut* linked(const std::string& name, AVFilterContext* filter, AVFilterInOut* next) {
    AVFilterInOut* const end = avfilter_inout_alloc();
    *end = {av_strdup(name.c_str()), filter, 0, next};
    return end;
}

std::size_t block_bytes(const material& input) {
    return block_frames * input.channels * sizeof(double);
}

} // namespace

void ffmpeg_filter::freeing::operator()(AVFilterGraph* graph) const noexcept {
    avfilter_graph_free(&graph);
}

void ffmpeg_filter::freeing::operator()(AVFrame* frame) const noexcept {
    av_frame_free(&frame);
}

void ffmpeg_filter::freeing::operator()(AVBufferPool* pool) const noexcept {
    av_buffer_pool_uninit(&pool);
}

ffmpeg_filter::ffmpeg_filter(const std::string& chain, const material& input, std::size_t inputs)
    : input_(input), graph_(avfilter_graph_alloc()), frame_(av_frame_alloc()), result_(av_frame_alloc()),
      pool_(av_buffer_pool_init(block_bytes(input), nullptr)) {
    const std::string format = fmt::format("sample_rate={0}:time_base=1/{0}:sample_fmt=dbl:channel_layout=0x{1:x}",
                                           rate_hz, input.channel_mask);
    graph_->nb_threads = 1;
    for (std::size_t i = 0; i < inputs; ++i) {
        sources_.push_back(add_filter(*graph_, "abuffer", source_name(i).c_str(), format));
    }
    sink_ = add_filter(*graph_, "abuffersink", "out", "");
    configure((inputs == 1 ? "[in0]" : "") + chain + ",aformat=sample_fmts=dbl[out]");
}

void ffmpeg_filter::configure(const std::string& chain) {
    AVFilterInOut* outputs = nullptr;
    for (std::size_t i = sources_.size(); i-- > 0;) {
        outputs = linked(source_name(i), sources_[i], outputs);
    }
    AVFilterInOut* inputs = linked("out", sink_, nullptr);
    const int parsed = avfilter_graph_parse_ptr(graph_.get(), chain.c_str(), &inputs, &outputs, nullptr);
    avfilter_inout_free(&outputs);
    avfilter_inout_free(&inputs);
    check(parsed, "parsing");
    check(avfilter_graph_config(graph_.get(), nullptr), "configuring");
}

std::size_t ffmpeg_filter::run(std::span<const double> interleaved, std::size_t input) {
    push(interleaved, input);
    return take_frames();
}

std::size_t ffmpeg_filter::finish(std::size_t input) {
    check(av_buffersrc_add_frame(sources_[input], nullptr), "the end of a source");
    return take_frames();
}

std::size_t ffmpeg_filter::take_frames() {
    std::size_t frames = 0;
    while (av_buffersink_get_frame(sink_, result_.get()) >= 0) {
        frames += static_cast<std::size_t>(result_->nb_samples);
        av_frame_unref(result_.get());
    }
    return frames;
}

/// The buffers come from a pool and the chain gets the only reference, so that no filter has to copy once more.
void ffmpeg_filter::push(std::span<const double> interleaved, std::size_t input) {
    AVFrame& frame = *frame_;
    frame.buf[0] = av_buffer_pool_get(pool_.get());
    frame.data[0] = frame.buf[0]->data;
    frame.linesize[0] = static_cast<int>(block_bytes(input_));
    frame.nb_samples = static_cast<int>(block_frames);
    frame.format = AV_SAMPLE_FMT_DBL;
    frame.sample_rate = static_cast<int>(rate_hz);
    check(av_channel_layout_from_mask(&frame.ch_layout, input_.channel_mask), "the layout");
    frame.pts = next_frame_;
    next_frame_ += static_cast<std::int64_t>(block_frames);
    std::copy(interleaved.begin(), interleaved.end(), reinterpret_cast<double*>(frame.data[0]));
    check(av_buffersrc_add_frame(sources_[input], frame_.get()), "the source");
}

} // namespace bench
