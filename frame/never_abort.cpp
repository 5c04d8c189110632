#include "frame/never_abort.h"

#include "quillet/quillet.h"

namespace kelvane {

namespace {

class never_aborting final : public velmora::abort_signal {
public:
    bool is_aborting() override { return false; }
    void* get_abort_event() override { return event_; }

private:
    void* event_ = GetInfiniteWaitEvent();
};

never_aborting signal;

} // namespace

velmora::abort_signal& never_abort_signal() noexcept {
    return signal;
}

} // namespace kelvane
