#include "frame/bug_check.h"

#include "quillet/quillet.h"

#include <string>

namespace kelvane {

void bug_check(std::string_view fault) noexcept {
    const std::string text = "VELMORA_BugCheck: " + std::string(fault);
    uPrintCrashInfo_OnEvent(text.data(), text.size());
    uBugCheck();
}

} // namespace kelvane
