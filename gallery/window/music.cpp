// Linked into a program of the gallery that plays music: where its picture is made, the music
// stands at the picture's moment too.

#include "gallery/window/picture.h"
#include "sound/control.h"

namespace {

bool PlayByHandWhereAPictureIsMade() {
    if (!Gallery::MakesPicture())
        return false;
    const auto time = std::make_shared<Vell::Sound::HandTime>();
    Vell::Sound::PlayByHand(time);
    Gallery::MomentListener() = [time](double seconds) { time->MoveTo(seconds); };
    return true;
}

[[maybe_unused]] const bool playsByHand = PlayByHandWhereAPictureIsMade();

} // namespace
