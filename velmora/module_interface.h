// What a module's one exported function returns.
#pragma once

#include <stdint.h>

namespace velmora {

class abort_signal;
class host_api;
class service_factory;
class settings_reader;
class settings_writer;

/// The version of this interface that host and module speak.
inline constexpr uint32_t api_version = 81;

/// A static object of the module.
class module_interface {
public:
    /// `api_version` of the module. [any-thread]
    virtual uint32_t get_api_version() = 0;

    /// The first record of the list of services. Static. [any-thread]
    virtual service_factory* get_service_list() = 0;

    /// Writes the module's settings, a record each: identity (16 bytes), size of the payload (32 bits, little-endian),
    /// payload. Throws "Overflow" for a payload past 32 bits, and what the stream throws. [main-thread]
    virtual void save_settings(settings_writer* stream, abort_signal* abort) = 0;

    /// Reads such records to the end of the stream; those that the module does not know are passed over. Throws
    /// "Unsupported format or corrupted file" when a record is cut short behind its identity. [main-thread]
    virtual void load_settings(settings_reader* stream, abort_signal* abort) = 0;

    /// Hands over where the module lies: its whole path and its file name, zero-terminated UTF-8, copied.
    /// [main-thread]
    virtual void set_module_names(const char* path, const char* file_name) = 0;

    /// Whether settings dialogs check that they run on the main thread; off at first. [main-thread]
    virtual void enable_thread_checks(bool enable) = 0;

    /// Reserved; answers false. [any-thread]
    virtual bool reserved() = 0;

protected:
    ~module_interface() = default;
};

/// The type and the name of the exported function. The host API is kept for later calls and may be null: no thread
/// checks then, and no console. A second call only replaces it. [main-thread]
using get_interface_function = module_interface*(host_api*);
inline constexpr char get_interface_name[] = "velmora_get_interface";

} // namespace velmora
