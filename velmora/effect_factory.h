// The service that names an effect and makes its instances.
#pragma once

#include "velmora/service.h"

namespace velmora {

class effect_instance;
class effect_preset;
class preset_change_callback;
class string_receiver;

/// A static service without state: any thread may ask it at any time, dialogs aside.
class effect_factory : public service {
public:
    static constexpr guid class_id{0x0D048731, 0x8AA8, 0x4704, {0x8A, 0xD6, 0x18, 0x9E, 0x24, 0xD4, 0x8C, 0x88}};

    /// Sets `name` to the display name. [any-thread]
    virtual void get_name(string_receiver* name) = 0;

    /// Sets owner and payload of `preset` to the effect's defaults. [any-thread]
    virtual void get_default_preset(effect_preset* preset) = 0;

    /// Makes an instance from `preset`. On success releases what `*out` held, stores the instance with one reference
    /// for the caller and answers true. A preset of another owner, or one that the effect refuses, answers false; that
    /// and an exception leave `*out` alone. May throw a bad allocation or what a malformed payload raises.
    /// [any-thread]
    virtual bool instantiate(effect_instance** out, const effect_preset* preset) = 0;

    /// Copies the effect's GUID to `*out`. [any-thread]
    virtual void get_identity(guid* out) = 0;

    /// Whether the effect has a settings dialog; the same answer on every platform. [any-thread]
    virtual bool has_settings_dialog() = 0;

    /// Runs the dialog on `preset`. True when it was changed. False for an effect without a dialog.
    /// Throws "Feature not implemented" for an effect with a dialog on a platform without them. [main-thread]
    virtual bool edit_settings(effect_preset* preset, void* parent_window) = 0;

protected:
    ~effect_factory() = default;
};

/// An effect with a settings dialog. Answers to this identity and to `effect_factory`'s.
class effect_factory_with_dialog : public effect_factory {
public:
    static constexpr guid class_id{0x9EC5D45E, 0x10F5, 0x46A7, {0x95, 0x46, 0xF3, 0xAC, 0xEC, 0x68, 0xB1, 0x49}};

    /// Runs the modal dialog over `parent_window`, opening with `preset`, and reports through `callback`.
    /// Throws "Feature not implemented" on a platform without dialogs. [main-thread]
    virtual void show_settings_dialog(const effect_preset* preset, void* parent_window,
                                      preset_change_callback* callback) = 0;

protected:
    ~effect_factory_with_dialog() = default;
};

} // namespace velmora
