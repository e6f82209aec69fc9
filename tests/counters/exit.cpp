// Coverage is written where a program ends in order. A child process of ours ends without that, for
// what its parent has to do at its end is none of its business; what it has run counts all the
// same.

// Names of the compiler's library, and of the linker.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" void __gcov_dump();
extern "C" [[noreturn]] void __real__exit(int status);

extern "C" [[noreturn]] void __wrap__exit(int status) {
    __gcov_dump();
    __real__exit(status);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
