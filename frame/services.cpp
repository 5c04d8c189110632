#include "frame/services.h"

#include <algorithm>

namespace kelvane {

bool answer_query(velmora::service& self, std::initializer_list<velmora::guid> answered, const velmora::guid& asked,
                  velmora::service** out) {
    if (std::find(answered.begin(), answered.end(), asked) == answered.end()) {
        return false;
    }
    self.add_ref(); // before the old reference goes: the two may be the same object
    store_reference(out, service_ptr<velmora::service>(&self));
    return true;
}

} // namespace kelvane
