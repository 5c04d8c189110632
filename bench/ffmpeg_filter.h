// A filter of libavfilter as a peer.
#pragma once

#include "bench/bench_blocks.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

struct AVBufferPool;
struct AVFilterContext;
struct AVFilterGraph;
struct AVFrame;

namespace bench {

/// A chain of filters that takes and gives interleaved doubles, as the effects do. Throws std::runtime_error when
/// libavfilter refuses something.
class ffmpeg_filter {
public:
    /// `chain` as on the command line of ffmpeg: "pan=stereo|FL=FL|FR=FR". One with several inputs of the same format
    /// names them [in0], [in1], …
    ffmpeg_filter(const std::string& chain, const material& input, std::size_t inputs = 1);

    /// Copies one block into the chain and takes out what is ready; answers its frames.
    std::size_t run(std::span<const double> interleaved, std::size_t input = 0);

    /// Nothing more comes to this input; answers the frames that are then ready.
    std::size_t finish(std::size_t input);

private:
    struct freeing {
        void operator()(AVFilterGraph* graph) const noexcept;
        void operator()(AVFrame* frame) const noexcept;
        void operator()(AVBufferPool* pool) const noexcept;
    };

    void configure(const std::string& chain);
    void push(std::span<const double> interleaved, std::size_t input);
    std::size_t take_frames();

    material input_;
    std::unique_ptr<AVFilterGraph, freeing> graph_;
    std::unique_ptr<AVFrame, freeing> frame_;
    std::unique_ptr<AVFrame, freeing> result_;
    std::unique_ptr<AVBufferPool, freeing> pool_;
    std::vector<AVFilterContext*> sources_; ///< owned by the graph
    AVFilterContext* sink_ = nullptr;       ///< owned by the graph
    std::int64_t next_frame_ = 0;
};

} // namespace bench
