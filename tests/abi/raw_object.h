// Objects of the boundary as they lie in memory: a first word that points to a table of functions.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <typeinfo>

namespace abi_test {

using any_function = void (*)();

/// Calls the function in slot `slot` of a module's object. The object is the hidden first argument.
template <class Result, class... Arguments>
Result call(void* object, std::size_t slot, Arguments... arguments) {
    const any_function* const table = *static_cast<const any_function* const*>(object);
    const auto function = reinterpret_cast<Result (*)(void*, Arguments...)>(table[slot]);
    return function(object, arguments...);
}

/// One entry of a table made by hand.
template <class Result, class... Arguments>
any_function entry(Result (*function)(Arguments...)) {
    return reinterpret_cast<any_function>(function);
}

/// What the tables made by hand say they are the tables of.
struct hand_made {};

/// A table made by hand, in slot order; an object's first word points to `functions`. One of the two ABIs keeps two
/// more words before them. The boundary never reads those, but the sanitizer of undefined behaviour does, and knows by
/// them which objects are not of a class that it could check (hand_made.supp).
template <std::size_t Slots>
struct function_table {
    explicit function_table(const any_function (&in_slot_order)[Slots]) {
        std::copy_n(in_slot_order, Slots, functions);
    }

    std::ptrdiff_t offset_to_top = 0;
    const std::type_info* type = &typeid(hand_made);
    any_function functions[Slots];
};

/// The 16 bytes of a GUID in memory.
using guid_bytes = std::array<std::uint8_t, 16>;

/// The bytes of a GUID in registry form, braces included: the first three groups are numbers and lie lowest byte
/// first.
guid_bytes guid(std::string_view registry_form);

/// A record of the module's list; its service object follows.
struct raw_record {
    const any_function* table;
    raw_record* next;
    const guid_bytes* class_id;
};

} // namespace abi_test
