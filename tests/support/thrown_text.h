// What an exception says.
#pragma once

#include <exception>
#include <string>

namespace testing_support {

/// The text of the `Exception` that `call` throws, or "nothing thrown". Others pass.
template <class Exception, class Call>
std::string thrown_text(Call call) {
    try {
        call();
    } catch (const Exception& caught) {
        return caught.what();
    }
    return "nothing thrown";
}

} // namespace testing_support
