#include "tests/abi/module_under_test.h"

#include "tests/abi/slots.h"

#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace abi_test {

namespace {

constexpr std::size_t most_records = 1000; // a chain that is longer has a loop

#ifdef _WIN32
any_function find_export(const char* name) {
    const HMODULE library = LoadLibraryW(L"kelvane.dll");
    return library == nullptr ? nullptr : reinterpret_cast<any_function>(GetProcAddress(library, name));
}
#else
any_function find_export(const char* name) {
    void* const library = dlopen("./kelvane.so", RTLD_NOW | RTLD_LOCAL);
    return library == nullptr ? nullptr : reinterpret_cast<any_function>(dlsym(library, name));
}
#endif

} // namespace

get_interface_function* module_export() {
    static const any_function found = find_export("velmora_get_interface");
    if (found == nullptr) {
        throw std::runtime_error("the module or its export is missing");
    }
    return reinterpret_cast<get_interface_function*>(found);
}

void* module_object() {
    return module_export()(nullptr);
}

std::vector<raw_record*> service_records() {
    std::vector<raw_record*> records;
    auto* record = call<raw_record*>(module_object(), module_slot::get_service_list);
    for (; record != nullptr; record = record->next) {
        records.push_back(record);
        if (records.size() > most_records) {
            throw std::runtime_error("the list of services does not end");
        }
    }
    return records;
}

void* service_of(raw_record* record) {
    void* service = nullptr;
    call<void>(record, record_slot::get_instance, &service);
    return service;
}

void* only_service(std::string_view class_id) {
    raw_record* found = nullptr;
    for (raw_record* const record : service_records()) {
        if (*record->class_id == guid(class_id)) {
            if (found != nullptr) {
                throw std::runtime_error("two services of one class");
            }
            found = record;
        }
    }
    if (found == nullptr) {
        throw std::runtime_error("no service of the class");
    }
    return service_of(found);
}

std::vector<void*> effect_factories() {
    const guid_bytes asked_class = guid(class_id::effect_factory);
    std::vector<void*> factories;
    for (raw_record* const record : service_records()) {
        void* factory = nullptr;
        if (call<bool>(service_of(record), service_slot::query, &factory, &asked_class)) {
            factories.push_back(factory);
        }
    }
    return factories;
}

void* factory_of(std::string_view identity) {
    for (void* const factory : effect_factories()) {
        guid_bytes answered{};
        call<void>(factory, factory_slot::get_identity, &answered);
        if (answered == guid(identity)) {
            return factory;
        }
    }
    throw std::runtime_error("no such effect");
}

} // namespace abi_test
