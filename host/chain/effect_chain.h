// Effects in a row.
#pragma once

#include "host/module/references.h"
#include "velmora/effect_instance.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace host {

class block_list;

/// An effect threw; the text names it and says what.
class effect_failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The abort signal answered yes.
class interrupted : public std::exception {
public:
    const char* what() const noexcept override { return "interrupted"; }
};

/// Drives its effects from one thread, as the player does: each gets the list as the one before it left it.
class effect_chain {
public:
    /// Puts an effect behind the others; `name` is for messages.
    void append(std::string name, service_ptr<velmora::effect_instance> effect);

    /// Takes a list through all effects. `flags` are of `velmora::run_flag`, `track` any word that names the track.
    /// Throws `effect_failure`, or `interrupted` when an effect gave up because of the signal.
    void run(block_list& list, const void* track, std::uint32_t flags, velmora::abort_signal& abort);

    /// Audio that the effects hold back now, in seconds.
    double latency_s() const;

private:
    struct step {
        std::string name;
        service_ptr<velmora::effect_instance> effect;
    };
    std::vector<step> steps_;
};

} // namespace host
