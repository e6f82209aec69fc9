/* What configure would find out about Emscripten, for libmpg123. */
#pragma once

#define ACCURATE_ROUNDING 1
#define CCALIGN 1
#define FRAME_INDEX 1
#define GAPLESS 1
#define HAVE_ATOLL 1
#define HAVE_DIRENT_H 1
#define HAVE_INTTYPES_H 1
#define HAVE_LIMITS_H 1
#define HAVE_LOCALE_H 1
#define HAVE_SIGNAL_H 1
#define HAVE_STDINT_H 1
#define HAVE_STDIO_H 1
#define HAVE_STDLIB_H 1
#define HAVE_STRERROR 1
#define HAVE_STRING_H 1
#define HAVE_STRINGS_H 1
#define HAVE_SYS_STAT_H 1
#define HAVE_SYS_TIME_H 1
#define HAVE_SYS_TYPES_H 1
#define HAVE_UNISTD_H 1
#define IEEE_FLOAT 1
#define INDEX_SIZE 1000
#define NO_ERRORMSG 1
#define NO_WARNING 1
#define PACKAGE_NAME "mpg123"
#define PACKAGE_VERSION "1.31.2"
#define PKGLIBDIR ""
#define SIZEOF_LONG 4
#define SIZEOF_OFF_T 8
#define USE_NEW_HUFFTABLE 1
#define lfs_alias_t off_t
