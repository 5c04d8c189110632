#include "host/audio/audio_reader.h"
#include "host/audio/layout_text.h"
#include "host/chain/album.h"
#include "host/objects/abort_switch.h"
#include "host/platform/interrupt.h"
#include "host/platform/path_text.h"
#include "host/program/commands.h"
#include "host/program/console.h"
#include "host/program/file_option.h"
#include "host/program/given_preset.h"
#include "host/program/module_option.h"
#include "host/program/rate_conversion.h"
#include "host/settings/step_text.h"
#include "host/settings/worded_settings.h"

#include <fmt/format.h>

#include <chrono>
#include <map>
#include <memory>
#include <set>

namespace host {

namespace {

constexpr std::size_t max_block_frames = 1U << 20U;

/// One `-e`, with the `--preset` behind it.
struct chain_step {
    step_text text;
    std::optional<std::string> preset;
};

/// What a step stands for.
struct chosen_effect {
    const effect_entry& effect;
    preset settings;
};

struct process_options {
    std::string module_file;
    std::vector<std::string> inputs;
    std::string output;
    std::vector<std::string> effects;
    std::vector<std::string> presets;
    std::string encoding; ///< empty: the container's own choice
    std::size_t block_frames = album_job{}.block_frames;
};

const std::map<std::string, sample_encoding> encodings{{"16", sample_encoding::pcm16},
                                                       {"24", sample_encoding::pcm24},
                                                       {"32", sample_encoding::pcm32},
                                                       {"f32", sample_encoding::float32},
                                                       {"f64", sample_encoding::float64}};

/// Brings the effects and presets together in the order in which they stand on the command line.
std::vector<chain_step> steps_of(const CLI::App& command, const process_options& options) {
    std::vector<chain_step> steps;
    std::size_t next_preset = 0;
    for (const CLI::Option* const parsed : command.parse_order()) {
        if (parsed->check_name("--effect")) {
            steps.push_back({split_step(options.effects.at(steps.size())), std::nullopt});
        } else if (parsed->check_name("--preset")) {
            if (steps.empty() || steps.back().preset) {
                throw CLI::ValidationError("--preset", "stands behind the -e whose preset it gives");
            }
            steps.back().preset = options.presets.at(next_preset++);
        }
    }
    return steps;
}

preset settings_of(const effect_entry& effect, const chain_step& step) {
    preset settings = step.preset ? given_preset(effect, *step.preset) : effect.default_preset;
    if (!step.text.settings.empty()) {
        change_preset(settings, effect.name, step.text.settings);
    }
    return settings;
}

std::vector<chosen_effect> choose_effects(const effect_catalogue& catalogue, const std::vector<chain_step>& steps) {
    std::vector<chosen_effect> chosen;
    for (const chain_step& step : steps) {
        const effect_entry& effect = catalogue.find(step.text.effect);
        chosen.push_back({effect, settings_of(effect, step)});
    }
    return chosen;
}

/// In Hz.
using rate_set = std::set<std::uint32_t>;

rate_set rates_of(const album_job& job) {
    rate_set rates;
    for (const auto& input : job.inputs) {
        rates.insert(open_audio(input)->format().sample_rate_hz);
    }
    return rates;
}

/// Answers the rates behind the step. Prints each warning once, though it may hold at several rates.
rate_set warn_of_step(const chosen_effect& step, const rate_set& rates) {
    const auto& [effect, settings] = step;
    rate_set behind;
    std::set<std::string> said{""}; // no warning is none to print
    for (const std::uint32_t rate_hz : rates) {
        const auto [rate_behind_hz, no_conversion] = convert_rate(effect, settings, rate_hz);
        for (const std::string& warning : {warning_of(settings, rate_hz), no_conversion}) {
            if (said.insert(warning).second) {
                print_notice(fmt::format("{}: {}", effect.name, warning));
            }
        }
        behind.insert(rate_behind_hz);
    }
    return behind;
}

void warn_of(const std::vector<chosen_effect>& chosen, rate_set rates) {
    for (const chosen_effect& step : chosen) {
        rates = warn_of_step(step, rates);
    }
}

effect_chain build_chain(const std::vector<chosen_effect>& chosen) {
    effect_chain chain;
    for (const chosen_effect& step : chosen) {
        chain.append(step.effect.name, instantiate(step.effect, step.settings));
    }
    return chain;
}

album_job job_of(const process_options& options) {
    album_job job;
    for (const std::string& input : options.inputs) {
        job.inputs.push_back(path_from_utf8(input));
    }
    job.output = path_from_utf8(options.output);
    if (!options.encoding.empty()) {
        job.encoding = encodings.at(options.encoding);
    }
    job.block_frames = options.block_frames;
    return job;
}

void print_summary(const album_job& job, const album_report& report, double elapsed_s) {
    fmt::print("Output      {} ({})\n", to_utf8(job.output), format_text(report.format));
    fmt::print("Duration    {:.3f} s in ({} frames), {:.3f} s out ({} frames)\n", report.seconds_in, report.frames_in,
               report.seconds_out, report.frames_out);
    fmt::print("Peak        {:.2f} dBFS, {} samples over full scale\n", report.level.peak_dbfs(),
               report.level.over_full_scale());
    fmt::print("Latency     {:.1f} ms at most\n", 1000.0 * report.latency_s);
    fmt::print("Speed       {:.0f} x real time\n", report.seconds_in / elapsed_s);
}

void run(const CLI::App& command, const process_options& options) {
    const auto steps = steps_of(command, options);
    const album_job job = job_of(options);
    static abort_switch abort; // outlives the guard, as that asks
    const interrupt_guard guard(abort);
    progress_bar bar;
    const open_module opened(options.module_file, [&](std::string_view line) { bar.print_above(line); });
    const auto chosen = choose_effects(opened.catalogue, steps);
    effect_chain chain = build_chain(chosen);
    warn_of(chosen, rates_of(job));
    const auto start = std::chrono::steady_clock::now();
    const album_report report =
        process_album(job, chain, abort, [&](double done_s, double total_s) { bar.show(done_s, total_s); });
    const std::chrono::duration<double> elapsed_s = std::chrono::steady_clock::now() - start;
    bar.wipe();
    print_summary(job, report, elapsed_s.count());
}

} // namespace

void add_process_command(CLI::App& program) {
    CLI::App* const command = program.add_subcommand(
        "process", "Take audio files through a chain of effects. Several inputs are consecutive tracks of one album");
    const auto options = std::make_shared<process_options>();
    add_module_option(*command, options->module_file);
    command->add_option("IN", options->inputs, "The tracks, in their order")
        ->required()
        ->type_name("FILE")
        ->check(not_empty());
    command->add_option("-o,--output", options->output, "Where the result goes; the extension picks the container")
        ->required()
        ->type_name("FILE")
        ->check(not_empty());
    command
        ->add_option("-e,--effect", options->effects,
                     "An effect: name, abbreviation or GUID; settings behind it as EFFECT:field=value,...")
        ->type_name("EFFECT")
        ->expected(1)
        ->allow_extra_args(false)
        ->take_all();
    command
        ->add_option("--preset", options->presets,
                     "The preset of the effect before it: its bytes in hexadecimal, as `preset show` prints them, "
                     "or a preset file")
        ->type_name("HEX|@FILE")
        ->expected(1)
        ->allow_extra_args(false)
        ->take_all();
    command->add_option("--bits", options->encoding, "Samples of the output, whole numbers or floating point")
        ->check(CLI::IsMember(&encodings))
        ->type_name("BITS");
    command->add_option("--block", options->block_frames, "Frames of a block as it enters the chain")
        ->check(CLI::Range(std::size_t{1}, max_block_frames))
        ->type_name("FRAMES")
        ->capture_default_str();
    command->callback([command, options] { run(*command, *options); });
}

} // namespace host
