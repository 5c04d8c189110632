#include "frame/console.h"

#include "frame/module_state.h"
#include "frame/received_text.h"
#include "quillet/quillet.h"
#include "velmora/host_api.h"

#include <cstdarg>

namespace kelvane {

namespace {

/// Ends the arguments also when an exception passes.
class argument_list {
public:
    explicit argument_list(std::va_list& arguments) noexcept : arguments_(arguments) {}
    ~argument_list() { va_end(arguments_); }
    argument_list(const argument_list&) = delete;
    argument_list& operator=(const argument_list&) = delete;

private:
    std::va_list& arguments_;
};

} // namespace

void print_notice(const char* format, ...) {
    velmora::host_api* const host = state().host;
    if (host == nullptr) {
        return;
    }
    received_text line;
    std::va_list arguments;
    va_start(arguments, format);
    const argument_list guard(arguments);
    uPrintfV(&line, format, arguments);
    host->print_console(line.text.data(), line.text.size());
}

} // namespace kelvane
