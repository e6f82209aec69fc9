#pragma once

#include <string>
#include <vector>

#include <dlfcn.h>
#include <link.h>

/// Keeps every library that is loaded now until the process ends. The demo's end unloads the
/// driver, and the leak checker could no longer tell whose the memory is that the driver leaves.
inline void KeepLibraries() {
    std::vector<std::string> names;
    dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* list) {
            static_cast<std::vector<std::string>*>(list)->emplace_back(info->dlpi_name);
            return 0;
        },
        &names);
    for (const std::string& name : names)
        if (!name.empty())
            dlopen(name.c_str(), RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
}
