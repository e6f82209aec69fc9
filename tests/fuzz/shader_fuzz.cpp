// Shader texts: what is read is the file up to its first NUL, or nothing.

#include "engine/render/shader.h"
#include "tests/fuzz/memoryfile.h"

#include <algorithm>
#include <cstring>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const MemoryFile file(bytes, size);
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> text(Vell::Shader::textFileRead(file.Path().c_str()));
    const auto* end = std::find(bytes, bytes + size, '\0');
    const auto length = static_cast<std::size_t>(end - bytes);
    if ((text == nullptr) != (size == 0))
        std::abort();
    if (text != nullptr &&
        (std::strlen(text.get()) != length || std::memcmp(text.get(), bytes, length) != 0))
        std::abort();
    return 0;
}
