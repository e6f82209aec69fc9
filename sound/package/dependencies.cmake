# What the sound library is linked with: when it is built, and when an installed one is found.
find_package(PkgConfig REQUIRED)
find_package(ALSA REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(MPG123 REQUIRED IMPORTED_TARGET libmpg123)
pkg_check_modules(KISSFFT REQUIRED IMPORTED_TARGET kissfft-float)
