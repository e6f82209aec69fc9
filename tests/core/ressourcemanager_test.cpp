#include "engine/core/ressourcemanager.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

using Vell::RessourceKind;
using Vell::RessourceManager;

namespace {

// Made before the registry and gone after it, as an engine user's static objects are: what they
// tell at their end must not reach into what is gone, which the sanitizers would tell.
const struct Survivor {
    ~Survivor() { RessourceManager::MarkDeleted(this); }
} survivor;

// The registry is one for the process and forgets nothing: every test uses names of its own.
RessourceManager& registry = RessourceManager::GetInstance();

TEST(RessourceManager, Is_one_instance) {
    EXPECT_EQ(&RessourceManager::GetInstance(), &registry);
}

TEST(RessourceManager, Is_nothing_but_its_table_and_cannot_be_copied) {
    EXPECT_EQ(sizeof(RessourceManager), sizeof(std::map<std::string, void*>));
    EXPECT_FALSE(std::is_copy_constructible_v<RessourceManager>);
    EXPECT_FALSE(std::is_copy_assignable_v<RessourceManager>);
}

TEST(RessourceManager, Finds_what_was_registered_under_its_exact_name) {
    int object = 0;
    registry.Register(&object, "Data/Gfx/found.png");
    EXPECT_TRUE(registry.Exist("Data/Gfx/found.png"));
    EXPECT_EQ(registry.Get("Data/Gfx/found.png"), &object);
}

TEST(RessourceManager, Returns_null_for_an_unknown_name_and_makes_no_entry) {
    EXPECT_FALSE(registry.Exist("Data/Gfx/unknown.png"));
    EXPECT_EQ(registry.Get("Data/Gfx/unknown.png"), nullptr);
    EXPECT_FALSE(registry.Exist("Data/Gfx/unknown.png"));
}

TEST(RessourceManager, Replaces_the_object_of_a_known_name) {
    int first = 0;
    int second = 0;
    registry.Register(&first, "replaced");
    registry.Register(&second, "replaced");
    EXPECT_EQ(registry.Get("replaced"), &second);
}

TEST(RessourceManager, Takes_two_spellings_of_one_path_for_two_names) {
    int object = 0;
    registry.Register(&object, "Data/spelling.png");
    for (const char* other : {"data/spelling.png", "./Data/spelling.png", "Data//spelling.png",
                              "Data/spelling.pn", "Data/spelling.png "})
        EXPECT_FALSE(registry.Exist(other)) << other;
}

TEST(RessourceManager, Compares_names_byte_by_byte) {
    int plain = 0;
    int withNull = 0;
    registry.Register(&plain, "bytes");
    registry.Register(&withNull, std::string("bytes\0more", 10));
    EXPECT_EQ(registry.Get("bytes"), &plain);
    EXPECT_EQ(registry.Get(std::string("bytes\0more", 10)), &withNull);
}

TEST(RessourceManager, Tells_an_entry_that_is_null_from_no_entry) {
    registry.Register(nullptr, "null");
    EXPECT_TRUE(registry.Exist("null"));
    EXPECT_EQ(registry.Get("null"), nullptr);
}

TEST(RessourceManager, Keeps_the_entry_of_an_object_that_is_gone) {
    auto object = std::make_unique<int>(0);
    const auto address = reinterpret_cast<std::uintptr_t>(object.get());
    registry.Register(object.get(), "stale");
    object.reset();
    EXPECT_TRUE(registry.Exist("stale"));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(registry.Get("stale")), address);
}

TEST(RessourceManager, Marks_all_names_of_an_object_that_ends_and_no_others) {
    int object = 0;
    int other = 0;
    registry.Register(&object, "ended", RessourceKind::Image);
    registry.Register(&object, "ended, too");
    registry.Register(&other, "not ended");
    RessourceManager::MarkDeleted(&object);
    for (const char* name : {"ended", "ended, too"}) {
        EXPECT_FALSE(registry.IsTaken(name));
        EXPECT_FALSE(registry.IsTakenBy(RessourceKind::Image, name));
        EXPECT_TRUE(registry.Exist(name)) << "the name stays";
        EXPECT_EQ(registry.Get(name), &object) << "and its pointer";
    }
    EXPECT_TRUE(registry.IsTaken("not ended"));
    registry.Register(&other, "ended");
    EXPECT_TRUE(registry.IsTaken("ended")) << "until it is given away anew";
}

TEST(RessourceManager, Tells_kinds_apart_and_an_unknown_one_from_none) {
    int object = 0;
    registry.Register(&object, "image", RessourceKind::Image);
    registry.Register(&object, "unknown");
    EXPECT_TRUE(registry.IsTakenBy(RessourceKind::Image, "image"));
    EXPECT_TRUE(registry.IsTaken("image"));
    EXPECT_FALSE(registry.IsTakenBy(RessourceKind::Mesh, "image"));
    EXPECT_FALSE(registry.IsTakenBy(RessourceKind::Shader, "image"));
    for (const RessourceKind kind :
         {RessourceKind::Image, RessourceKind::Mesh, RessourceKind::Shader}) {
        EXPECT_TRUE(registry.IsTakenBy(kind, "unknown"));
        EXPECT_FALSE(registry.IsTakenBy(kind, "no such name"));
    }
    EXPECT_FALSE(registry.IsTaken("no such name"));
    EXPECT_FALSE(registry.Exist("no such name")) << "asking makes no entry";
}

} // namespace
