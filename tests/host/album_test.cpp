#include "host/chain/album.h"

#include "host/objects/abort_switch.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "velmora/block_list.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace host {
namespace {

constexpr std::uint32_t rate_hz = 44100;

/// What an effect is told in one call.
struct told {
    const void* track;
    std::uint32_t flags;
    std::size_t blocks;
};

/// Writes down its calls and changes nothing.
class listening_effect final : public velmora::effect_instance {
public:
    explicit listening_effect(std::vector<told>& calls) : calls_(calls) {}

    std::uint32_t release() override {
        delete this;
        return 0;
    }
    std::uint32_t add_ref() override { return 1; }
    bool query(velmora::service**, const velmora::guid*) override { return false; }
    void run(velmora::block_list*, void*, std::uint32_t) override { ADD_FAILURE() << "the host can abort its calls"; }
    void flush() override { ADD_FAILURE() << "nobody seeks"; }
    double get_latency() override { return 0.0; }
    bool needs_track_change_mark() override { return true; }
    void run_abortable(velmora::block_list* list, void* track, std::uint32_t flags, velmora::abort_signal*) override {
        calls_.push_back({track, flags, list->get_count()});
    }
    void on_track_end(velmora::abort_signal*) override {}
    void on_playback_end(velmora::abort_signal*) override {}
    bool on_block(velmora::sample_block*, velmora::abort_signal*) override { return true; }

private:
    virtual ~listening_effect() = default;

    std::vector<told>& calls_;
};

/// Plays tracks of these lengths in blocks of 100 frames and returns what the chain was told.
std::vector<told> play_album(const std::vector<std::size_t>& tracks_frames) {
    const testing_support::temporary_folder folder;
    album_job job;
    job.block_frames = 100;
    job.output = folder / "album.wav";
    for (const std::size_t frames : tracks_frames) {
        job.inputs.push_back(folder / (std::to_string(job.inputs.size()) + ".wav"));
        const auto track = create_audio(job.inputs.back(), {rate_hz, 1, 0x4}, std::nullopt);
        track->write(std::vector<double>(frames, 0.25));
        track->commit();
    }
    std::vector<told> calls;
    effect_chain chain;
    chain.append("listener", service_ptr<velmora::effect_instance>(new listening_effect(calls)));
    abort_switch abort;
    process_album(job, chain, abort, [](double, double) {});
    return calls;
}

TEST(Album, TheEndOfEachTrackAndOfPlaybackIsToldBehindTheLastBlock) {
    std::vector<std::string> heard;
    for (const told& call : play_album({250, 100, 0, 1})) {
        heard.push_back(std::to_string(call.blocks) + " blocks, flags " + std::to_string(call.flags));
    }
    const std::string block = "1 blocks, flags 0";
    const std::string end_of_track = "0 blocks, flags 1";
    const std::string end_of_all = "0 blocks, flags 3";
    EXPECT_EQ(heard, (std::vector<std::string>{block, block, block, end_of_track, // 100, 100 and 50 frames
                                               block, end_of_track,               //
                                               end_of_track,                      // the track without a frame
                                               block, end_of_all}));
}

TEST(Album, ATrackKeepsItsHandleUpToItsEndAndTheNextHasAnother) {
    std::set<const void*> handles;
    const void* current = nullptr;
    for (const told& call : play_album({250, 100, 1, 300})) {
        EXPECT_NE(call.track, nullptr);
        EXPECT_TRUE(current == nullptr || call.track == current);
        handles.insert(call.track);
        current = call.flags == 0 ? call.track : nullptr; // behind the end comes another
    }
    EXPECT_EQ(handles.size(), 4U);
}

} // namespace
} // namespace host
