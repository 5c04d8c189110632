#include "frame/console.h"

#include "frame/module_state.h"
#include "frame/received_text.h"
#include "quillet/quillet.h"
#include "velmora/host_api.h"

#include <cstdarg>

namespace kelvane {

void print_notice(const char* format, ...) {
    velmora::host_api* const host = state().host;
    if (host == nullptr) {
        return;
    }
    received_text line;
    std::va_list arguments;
    va_start(arguments, format);
    try {
        uPrintfV(&line, format, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
    host->print_console(line.text.data(), line.text.size());
}

} // namespace kelvane
