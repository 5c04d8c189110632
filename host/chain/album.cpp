#include "host/chain/album.h"

#include "host/audio/audio_reader.h"
#include "host/audio/layout_text.h"
#include "host/objects/block_list.h"
#include "host/platform/path_text.h"
#include "velmora/abort_signal.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>

namespace host {

namespace {

/// How a later format can be brought to that of the file.
std::string advice(const audio_format& of_file, const audio_format& later) {
    if (of_file.sample_rate_hz == later.sample_rate_hz) {
        return "";
    }
    return fmt::format(": a resampler brings all to one rate, as -e ssrc:rate={} does", of_file.sample_rate_hz);
}

/// The one file that the blocks behind the chain go to. It is made when its format is known.
class album_output {
public:
    explicit album_output(const album_job& job) : job_(job) {}

    void write(block& written) {
        const audio_format format{written.get_sample_rate(), written.get_channels(), written.get_channel_mask()};
        if (!writer_) {
            open(format);
        } else if (!(format == report_.format)) {
            throw album_error(fmt::format("the output changes from {} to {} after {:.3f} s; one file holds one rate "
                                          "and layout{}",
                                          format_text(report_.format), format_text(format), seconds(),
                                          advice(report_.format, format)));
        }
        writer_->write(written.samples());
        report_.level.measure(written.samples());
        report_.frames_out += written.get_sample_count();
    }

    /// Puts the file in its place. Without a single block it is an empty one of the given format.
    void commit(const audio_format& format_of_silence) {
        if (!writer_) {
            open(format_of_silence);
        }
        writer_->commit();
        report_.seconds_out = seconds();
    }

    album_report& report() noexcept { return report_; }

private:
    void open(const audio_format& format) {
        writer_ = create_audio(job_.output, format, job_.encoding);
        report_.format = format;
    }

    double seconds() const { return static_cast<double>(report_.frames_out) / report_.format.sample_rate_hz; }

    const album_job& job_;
    std::unique_ptr<audio_writer> writer_;
    album_report report_;
};

void refuse_overwriting_inputs(const album_job& job) {
    for (const auto& input : job.inputs) {
        std::error_code cannot_compare; // the output, as a rule, does not exist
        if (std::filesystem::equivalent(input, job.output, cannot_compare)) {
            throw album_error(fmt::format("{} is an input; choose another output", to_utf8(job.output)));
        }
    }
}

/// The tracks' length in seconds as their files declare it. Opening each of them here tells of a bad one before any
/// work is done.
double declared_seconds(const album_job& job) {
    double total_s = 0.0;
    for (const auto& input : job.inputs) {
        const auto reader = open_audio(input);
        total_s += static_cast<double>(reader->declared_frames().value_or(0)) / reader->format().sample_rate_hz;
    }
    return total_s;
}

class album_run {
public:
    album_run(const album_job& job, effect_chain& chain, velmora::abort_signal& abort,
              const progress_function& progress)
        : job_(job), chain_(chain), abort_(abort), progress_(progress), output_(job) {}

    album_report run() {
        refuse_overwriting_inputs(job_);
        total_s_ = declared_seconds(job_);
        audio_format last_format;
        for (const auto& input : job_.inputs) {
            last_format = play_track(input, &input == &job_.inputs.back());
        }
        output_.commit(last_format);
        return output_.report();
    }

private:
    audio_format play_track(const std::filesystem::path& input, bool is_last) {
        const auto reader = open_audio(input);
        const audio_format format = reader->format();
        samples_.resize(job_.block_frames * format.channels);
        track_ = &input;
        while (const std::size_t frames = reader->read(samples_)) {
            block_list list;
            list.append(block({samples_.data(), frames * format.channels}, format.sample_rate_hz, format.channels,
                              format.channel_mask));
            run_chain(list, 0);
            count_input(frames, format.sample_rate_hz);
        }
        block_list nothing_left;
        run_chain(nothing_left, velmora::run_flag::end_of_track | (is_last ? velmora::run_flag::end_of_playback : 0U));
        return format;
    }

    void run_chain(block_list& list, std::uint32_t flags) {
        if (abort_.is_aborting()) {
            throw interrupted();
        }
        chain_.run(list, track_, flags, abort_);
        for (std::size_t i = 0; i < list.get_count(); ++i) {
            if (!list.at(i).samples().empty()) {
                output_.write(list.at(i));
            }
        }
        album_report& report = output_.report();
        report.latency_s = std::max(report.latency_s, chain_.latency_s());
    }

    void count_input(std::size_t frames, std::uint32_t sample_rate_hz) {
        album_report& report = output_.report();
        report.frames_in += frames;
        report.seconds_in += static_cast<double>(frames) / sample_rate_hz;
        progress_(report.seconds_in, total_s_);
    }

    const album_job& job_;
    effect_chain& chain_;
    velmora::abort_signal& abort_;
    const progress_function& progress_;
    album_output output_;
    std::vector<double> samples_;
    const void* track_ = nullptr; ///< the current track's handle: where its name is in the job
    double total_s_ = 0.0;
};

} // namespace

album_report process_album(const album_job& job, effect_chain& chain, velmora::abort_signal& abort,
                           const progress_function& progress) {
    return album_run(job, chain, abort, progress).run();
}

} // namespace host
