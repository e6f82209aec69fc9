// Runs in every executable of this folder. An entry point without a row in entrypoints.h would be
// libGL's own: the program would still link, and the call would be seen by no test.

#include <elf.h>
#include <link.h>

#include <cctype>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace {

/// The address that the executable's dynamic section has under that tag.
template <typename T>
const T* Dynamic(ElfW(Sxword) tag) {
    const ElfW(Dyn)* entry = _DYNAMIC;
    while (entry->d_tag != DT_NULL && entry->d_tag != tag)
        ++entry;
    return entry->d_tag == tag ? reinterpret_cast<const T*>(entry->d_un.d_ptr) : nullptr;
}

/// Whether it is called glName, gluName or glXName, as OpenGL's functions are.
bool IsOpenGl(const char* name) {
    if (std::strncmp(name, "gl", 2) != 0)
        return false;
    return std::isupper(name[2]) != 0 || (name[2] == 'u' && std::isupper(name[3]) != 0);
}

/// What this executable takes from other libraries. Those symbols stand before all that are hashed,
/// and the second word of the hash table says where the hashed ones begin.
std::vector<std::string> Imported() {
    const auto* symbols = Dynamic<ElfW(Sym)>(DT_SYMTAB);
    const auto* names = Dynamic<char>(DT_STRTAB);
    const auto* hash = Dynamic<uint32_t>(DT_GNU_HASH);
    std::vector<std::string> imported;
    if (symbols != nullptr && names != nullptr && hash != nullptr)
        for (uint32_t i = 1; i < hash[1]; ++i)
            imported.emplace_back(names + symbols[i].st_name);
    return imported;
}

} // namespace

TEST(RecordingGl, Is_behind_every_entry_point_that_this_program_calls) {
    const std::vector<std::string> imported = Imported();
    ASSERT_THAT(imported, ::testing::Contains("strlen")) << "the table was not read";
    for (const std::string& name : imported)
        EXPECT_FALSE(IsOpenGl(name.c_str())) << name << " has no row in entrypoints.h";
}
