#pragma once

/// How often this program has asked for memory with new. Only programs that call this count.
int Allocations();
