// A filter of libavfilter as a peer.
#pragma once

#include "bench/bench_blocks.h"

#include <memory>
#include <span>
#include <string>

struct AVBufferPool;
struct AVFilterContext;
struct AVFilterGraph;
struct AVFrame;

namespace bench {

/// A chain of filters that takes and gives interleaved doubles, as the effects do. Throws std::runtime_error when
/// libavfilter refuses something.
class ffmpeg_filter {
public:
    /// `chain` as on the command line of ffmpeg: "pan=stereo|FL=FL|FR=FR".
    ffmpeg_filter(const std::string& chain, const material& input);

    /// Copies one block into the chain and takes out what is ready; answers its frames.
    std::size_t run(std::span<const double> interleaved);

private:
    struct freeing {
        void operator()(AVFilterGraph* graph) const noexcept;
        void operator()(AVFrame* frame) const noexcept;
        void operator()(AVBufferPool* pool) const noexcept;
    };

    void push(std::span<const double> interleaved);

    material input_;
    std::unique_ptr<AVFilterGraph, freeing> graph_;
    std::unique_ptr<AVFrame, freeing> frame_;
    std::unique_ptr<AVFrame, freeing> result_;
    std::unique_ptr<AVBufferPool, freeing> pool_;
    AVFilterContext* source_ = nullptr; ///< owned by the graph
    AVFilterContext* sink_ = nullptr;   ///< owned by the graph
    std::int64_t next_frame_ = 0;
};

} // namespace bench
