#include "tests/module/run_effect.h"

#include "host/objects/abort_switch.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace testing_support {

namespace {

void run_and_join(const list_run& run, strict_list& list, std::uint32_t flags, programme& joined) {
    run(list, flags);
    join(joined, content_of(list));
    list = strict_list();
}

/// The programme as one row of blocks.
std::vector<stretch> cut_up(const programme& played, const cutting& cut, random_source& random) {
    std::vector<stretch> blocks;
    for (const stretch& whole : played) {
        auto first = whole.samples.begin();
        for (const std::size_t frames : split(random, whole.frames(), cut.longest_block_frames)) {
            const auto last = first + static_cast<std::ptrdiff_t>(frames * whole.format.channels);
            blocks.push_back({whole.format, {first, last}});
            first = last;
        }
    }
    return blocks;
}

} // namespace

std::size_t frames_of(const programme& played) {
    std::size_t frames = 0;
    for (const stretch& one : played) {
        frames += one.frames();
    }
    return frames;
}

void join(programme& all, const programme& more) {
    for (const stretch& one : more) {
        if (all.empty() || !(all.back().format == one.format)) {
            all.push_back({one.format, {}});
        }
        all.back().samples.insert(all.back().samples.end(), one.samples.begin(), one.samples.end());
    }
}

void append(strict_list& list, const programme& blocks) {
    for (const stretch& block : blocks) {
        list.append(block.samples, block.format);
    }
}

programme content_of(strict_list& list) {
    programme content;
    for (std::size_t i = 0; i < list.get_count(); ++i) {
        EXPECT_NE(list.at(i).get_sample_count(), 0U) << "a block without frames came out";
        join(content, {{list.at(i).format(), list.at(i).samples()}});
    }
    return content;
}

programme noise_in(const std::vector<block_format>& formats, std::size_t frames, double amplitude,
                   random_source& random) {
    programme made;
    for (const block_format& format : formats) {
        made.push_back({format, noise(random, frames * format.channels, amplitude)});
    }
    return made;
}

programme mono_noise(std::uint32_t rate_hz, std::size_t frames, random_source& random) {
    return noise_in({{rate_hz, 1, 0x4}}, frames, 0.9, random);
}

programme play(const list_run& run, const programme& played, const cutting& cut, std::uint32_t last_flags,
               random_source& random) {
    programme joined;
    strict_list list;
    std::size_t blocks_in_this_call = pick(random, 1, cut.most_blocks_a_call);
    for (const stretch& block : cut_up(played, cut, random)) {
        list.append(block.samples, block.format);
        if (list.get_count() == blocks_in_this_call) {
            run_and_join(run, list, 0, joined);
            blocks_in_this_call = pick(random, 1, cut.most_blocks_a_call);
        }
    }
    run_and_join(run, list, last_flags, joined);
    return joined;
}

programme play(velmora::effect_instance& effect, const programme& played, const cutting& cut, std::uint32_t last_flags,
               random_source& random) {
    host::abort_switch abort;
    const auto run = [&](strict_list& list, std::uint32_t flags) {
        effect.run_abortable(&list, nullptr, flags, &abort);
    };
    return play(run, played, cut, last_flags, random);
}

programme play_whole(velmora::effect_instance& effect, const programme& played, std::uint32_t flags) {
    random_source random(1);
    return play(effect, played, {1'000'000, 1}, flags, random);
}

bool is_valid(strict_block& block) {
    const std::size_t channels = block.get_channels();
    return block.get_sample_rate() >= 1 && channels >= 1 && block.get_sample_count() >= 1 &&
           block.get_data_ro() != nullptr && block.get_sample_count() <= block.get_data_size() / channels;
}

bool are_equal(const programme& a, const programme& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const stretch& left, const stretch& right) {
        return left.format == right.format && bits_of(left.samples) == bits_of(right.samples);
    });
}

} // namespace testing_support
