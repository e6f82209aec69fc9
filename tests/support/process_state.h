#pragma once

#include <cstddef>

/// How many descriptors this process has open, besides the one that finds out.
int OpenDescriptors();

/// Bytes that are allocated and not freed, as the C library counts them.
std::size_t HeapBytes();

/// Bytes of memory that the process keeps, after what is free has been handed back.
std::size_t ResidentBytes();
