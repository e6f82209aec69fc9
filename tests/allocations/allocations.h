#pragma once

/// How often this program has asked for memory with new. Only programs that are linked with this
/// count; it stands beside test_support, so that no other is.
int Allocations();

/// From now on only those of which this says so; it must not ask for memory itself.
void CountAllocationsIf(bool (*counts)());
