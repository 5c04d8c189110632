#include "host/chain/effect_chain.h"

#include "host/objects/block_list.h"
#include "velmora/abort_signal.h"

#include <fmt/format.h>

namespace host {

void effect_chain::append(std::string name, service_ptr<velmora::effect_instance> effect) {
    steps_.push_back({std::move(name), std::move(effect)});
}

void effect_chain::run(block_list& list, const void* track, std::uint32_t flags, velmora::abort_signal& abort) {
    for (const step& current : steps_) {
        try {
            current.effect->run_abortable(&list, const_cast<void*>(track), flags, &abort);
        } catch (const std::exception& failure) {
            if (abort.is_aborting()) {
                throw interrupted();
            }
            throw effect_failure(fmt::format("\"{}\" failed: {}", current.name, failure.what()));
        }
    }
}

double effect_chain::latency_s() const {
    double sum_s = 0.0;
    for (const step& current : steps_) {
        sum_s += current.effect->get_latency();
    }
    return sum_s;
}

} // namespace host
