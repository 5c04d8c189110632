// The module's settings stream: records of identity (16 bytes), payload size (32 bits, little-endian) and payload.
#pragma once

#include "velmora/guid.h"
#include "velmora/settings_stream.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kelvane {

/// One stored value.
class config_variable {
public:
    virtual velmora::guid identity() const = 0;
    virtual void write(velmora::settings_writer& stream, velmora::abort_signal* abort) = 0;

    /// `stream` ends with the value's record; what is not read is passed over.
    virtual void read(velmora::settings_reader& stream, velmora::abort_signal* abort) = 0;

protected:
    ~config_variable() = default;
};

/// The variables to save and those to load, in two registries, so that a variable that is no longer saved can still be
/// read from an old stream. Variables are borrowed.
class settings_store {
public:
    void register_for_saving(config_variable& variable) { saved_.push_back(&variable); }
    void register_for_loading(config_variable& variable) { loaded_.push_back(&variable); }

    /// Writes a record for each saved variable, in the order of their registration. Throws `exception_overflow` for a
    /// value past 32 bits of size, and what the stream throws.
    void save(velmora::settings_writer& stream, velmora::abort_signal* abort) const;

    /// Reads records until an identity comes short. A record that nobody loads is passed over. Throws
    /// `exception_io_data_truncation` when a size or a payload comes short. The size that a record claims is never
    /// allocated.
    void load(velmora::settings_reader& stream, velmora::abort_signal* abort) const;

private:
    config_variable* find_loaded(const velmora::guid& identity) const;

    std::vector<config_variable*> saved_;
    std::vector<config_variable*> loaded_;
};

/// The size field of a record. Throws `exception_overflow` when `bytes` does not fit in 32 bits.
std::uint32_t record_size(std::size_t bytes);

} // namespace kelvane
