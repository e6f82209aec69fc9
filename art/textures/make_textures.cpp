#include "art/common/options.h"
#include "art/textures/textures.h"

int main(int count, char** arguments) {
    int status = 0;
    const auto operands = Art::ReadArguments(
        {.program = "make_textures", .purpose = "Paints the city's textures into FOLDER."}, count,
        arguments, status);
    if (!operands)
        return status;
    return Art::WriteTextures(operands->front()) ? 0 : 1;
}
