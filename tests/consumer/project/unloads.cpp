// usage: unloads LIBRARY...
//
// Loads each library and lets go of it again; after that none may be left in the process.
#include <dlfcn.h>

#include <cstdio>

int main(int argumentCount, char ** arguments) {
    int left = 0;
    for (int i = 1; i < argumentCount; ++i) {
        void * const library = dlopen(arguments[i], RTLD_NOW | RTLD_LOCAL);
        if (!library) {
            std::fprintf(stderr, "%s\n", dlerror());
            return 1;
        }
        dlclose(library);
        bool const stays = dlopen(arguments[i], RTLD_NOW | RTLD_NOLOAD) != nullptr;
        std::printf("%s %s\n", arguments[i], stays ? "stays loaded" : "unloads");
        left += stays;
    }
    return left == 0 ? 0 : 1;
}
