// What the effects are compared with, in the same run.
#pragma once

#include <string>
#include <vector>

namespace bench {

/// An effect and a peer that does the same to the same input.
struct comparison {
    std::string effect;
    std::string peer;
    std::string input;
};

/// Registers benchmarks "PEER/INPUT": a plain copy of the blocks for each input, ffmpeg's filters, and effects in their
/// literal form. Every peer is fed as the effects are, its copy of the block included. Gives what to compare.
std::vector<comparison> register_peers();

} // namespace bench
