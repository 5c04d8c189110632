// The speed of each effect through the built module.
#pragma once

#include <filesystem>

namespace bench {

/// Registers benchmarks "EFFECT/INPUT" for each effect of the module. An iteration fills a block of 4096 frames at
/// 44100 Hz with noise (a copy) and runs the effect on it; so a number holds the copy too, and the ratio to the peer
/// "copy" tells what the effect adds.
///
/// What would make the numbers lie: a block that the effect passes by (each row names the input, one that the effect
/// changes), a cold cache (the block stays in the second level, as it does in a player), another process on the machine
/// (interleave the repetitions).
void register_effects(const std::filesystem::path& module_file);

} // namespace bench
