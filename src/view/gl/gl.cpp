#include "view/gl/gl.h"

#include <cstdio>

GlFunctions gl;

template<typename Function> static bool loadFunction(Function& slot, GlLoader loader, const char* name) {
    slot = reinterpret_cast<Function>(loader(name));
    if (slot == nullptr) std::fprintf(stderr, "missing GL function %s\n", name);
    return slot != nullptr;
}

bool loadGlFunctions(GlLoader loader) {
    bool complete = true;
#define LOAD_FUNCTION(name) complete &= loadFunction(gl.name, loader, "gl" #name);
    GL_FUNCTIONS(LOAD_FUNCTION)
#undef LOAD_FUNCTION
    return complete;
}
