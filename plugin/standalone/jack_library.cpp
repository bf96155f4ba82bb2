#include "plugin/standalone/jack_library.h"

#include <dlfcn.h>

namespace zephyra {

namespace {

void sayNothing(const char*) {}

template <typename Function>
bool take(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

const JackLibrary* load() {
    static JackLibrary functions;
    void* const library = ::dlopen("libjack.so.0", RTLD_NOW | RTLD_LOCAL);
    if (!library) return nullptr;
#define ZEPHYRA_JACK_TAKE(name)                                                                    \
    if (!take(library, "jack_" #name, functions.name)) return nullptr;
    ZEPHYRA_JACK_FUNCTIONS(ZEPHYRA_JACK_TAKE)
#undef ZEPHYRA_JACK_TAKE
    functions.set_error_function(sayNothing);
    functions.set_info_function(sayNothing);
    return &functions;
}

} // namespace

const JackLibrary* JackLibrary::find() {
    static const JackLibrary* const library = load(); // never unloaded: its threads may linger
    return library;
}

} // namespace zephyra
