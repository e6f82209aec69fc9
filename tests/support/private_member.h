#pragma once

// How a test reaches what a class keeps to itself, without a word about tests in the class's
// header. The language checks no access among the arguments of an explicit instantiation; a friend
// that is defined by it hands out the pointer to the member, or the value of a private enumerator.
//
//     OPEN_PRIVATE(waterQuad, &Vell::Water::quad) at global scope, then (water.*waterQuad)[0]
//
// For what no handle, no public function and no OpenGL query shows; a
// test that can ask in one of those ways does.

template <class Key, auto member>
struct PrivateMember {
    friend constexpr auto Open(Key) { return member; }
};

#define OPEN_PRIVATE(name, member)                                                                 \
    struct KeyOf_##name {                                                                          \
        friend constexpr auto Open(KeyOf_##name);                                                  \
    };                                                                                             \
    template struct PrivateMember<KeyOf_##name, member>;                                           \
    inline constexpr auto name = Open(KeyOf_##name())
