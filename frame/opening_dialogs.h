// Dialogs whose window is about to be made.
#pragma once

#include <map>
#include <mutex>
#include <thread>

namespace kelvane {

class modal_dialog;

/// The window of a modal dialog is made on the thread that opens it, so its first message finds its object by the
/// thread. Holds the module's only lock.
class opening_dialogs {
public:
    /// Until it is claimed, `dialog` is the one that the calling thread opens.
    void announce(modal_dialog& dialog);

    /// The dialog that the calling thread opens, at most once; null when there is none.
    modal_dialog* claim();

private:
    std::mutex mutex_;
    std::map<std::thread::id, modal_dialog*> by_thread_;
};

} // namespace kelvane
