// make_textures FOLDER: paints the city's textures into FOLDER.
#include "art/textures/textures.h"

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_textures FOLDER\n");
        return 2;
    }
    return Art::WriteTextures(argv[1]) ? 0 : 1;
}
