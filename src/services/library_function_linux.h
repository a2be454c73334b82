#pragma once

#include <dlfcn.h>

#include <cstring>

namespace vantle {

// Sets function to the function named name in a library opened with dlopen; false, with function
// null, when the library has none of that name. For libraries the program opens only when a rare
// action first needs them, rather than linking them and loading them at every start.
template <typename Function>
bool lookUpLibraryFunction(void* library, const char* name, Function& function) {
    // dlsym hands back an object pointer; POSIX guarantees that it converts to a function pointer.
    void* symbol = dlsym(library, name);
    static_assert(sizeof function == sizeof symbol);
    std::memcpy(&function, &symbol, sizeof function);
    return symbol != nullptr;
}

}  // namespace vantle
