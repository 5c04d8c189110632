#include "frame/effect_base.h"

#include "frame/bug_check.h"
#include "frame/never_abort.h"
#include "frame/services.h"
#include "velmora/block_list.h"

#include <algorithm>

namespace kelvane {

template <class Interface>
std::uint32_t basic_effect<Interface>::release() {
    const std::uint32_t left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) {
        delete this;
    }
    return left;
}

template <class Interface>
std::uint32_t basic_effect<Interface>::add_ref() {
    return references_.fetch_add(1, std::memory_order_relaxed) + 1;
}

template <class Interface>
bool basic_effect<Interface>::query(velmora::service** out, const velmora::guid* asked_class) {
    return answer_query(*this, {velmora::effect_instance::class_id, velmora::effect_instance::abortable_class_id},
                        *asked_class, out);
}

template <class Interface>
void basic_effect<Interface>::run(velmora::block_list* list, void* track, std::uint32_t flags) {
    this->run_abortable(list, track, flags, &never_abort_signal());
}

template <class Interface>
void basic_effect<Interface>::run_abortable(velmora::block_list* list, void* track, std::uint32_t flags,
                                            velmora::abort_signal* abort) {
    const scoped_context scope(context_, {list, track, 0});
    if (abort == nullptr) {
        abort = &never_abort_signal();
    }
    run_blocks(abort);
    if ((flags & velmora::run_flag::end_of_playback) != 0) {
        this->on_playback_end(abort);
    } else if ((flags & velmora::run_flag::end_of_track) != 0 && this->needs_track_change_mark()) {
        this->on_track_end(abort);
    }
}

template <class Interface>
void basic_effect<Interface>::run_blocks(velmora::abort_signal* abort) {
    velmora::block_list& list = *context_.list;
    while (context_.index < list.get_count()) {
        velmora::sample_block& block = *list.get_item(context_.index);
        const bool keep = is_block_with_audio(block) && this->on_block(&block, abort);
        // The index is read anew: what the effect emitted has moved it.
        if (keep) {
            ++context_.index;
        } else {
            list.remove_item(context_.index);
        }
    }
}

template <class Interface>
void basic_effect<Interface>::emit_block(std::span<const double> samples, const stream_format& format) {
    emit_block(samples.size() / format.channels, format,
               [samples](std::span<double> filled) { std::copy(samples.begin(), samples.end(), filled.begin()); });
}

template <class Interface>
velmora::sample_block& basic_effect<Interface>::insert_block(std::size_t samples) {
    if (context_.list == nullptr) {
        bug_check("audio emitted outside a run");
    }
    velmora::sample_block* const block = context_.list->insert_item(context_.index, samples);
    ++context_.index;
    return *block;
}

template <class Interface>
void basic_effect<Interface>::remove_blocks_since(std::size_t first) {
    while (context_.index > first) {
        --context_.index;
        context_.list->remove_item(context_.index);
    }
}

template class basic_effect<velmora::effect_instance>;
template class basic_effect<velmora::matrix_effect_instance>;

} // namespace kelvane
