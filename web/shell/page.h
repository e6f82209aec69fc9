#pragma once

// What the program asks of the page around it; web/shell/page.js leads each call to the worker that
// the program runs in (web/page/worker.js).

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Makes a picture of this size with a WebGL 2 context, which becomes the current one. 0 when the
/// browser has none.
int page_open_picture(int width, int height);

/// Shows what was drawn, and returns when the next frame is due. The page and its messages have
/// their turn meanwhile; it is the only call that lets them.
void page_next_frame(void);

/// The time in microseconds since some fixed moment. It stands still while the page is hidden, and
/// from page_play_music() until the music's first sample is heard.
double page_microseconds(void);

/// What happened next: 0 when nothing did, else one of PAGE_..., with its two numbers in `values`.
int page_next_event(int* values);

enum {
    PAGE_KEY_DOWN = 1,    ///< the key's character, small, as Unicode; or one of PAGE_KEY_...
    PAGE_KEY_UP = 2,      ///< the same
    PAGE_MOUSE_MOTION = 3 ///< pixels of the picture to the right, and down
};
enum { PAGE_KEY_UPWARD = -1, PAGE_KEY_DOWNWARD = -2, PAGE_KEY_LEFT = -3, PAGE_KEY_RIGHT = -4 };

/// The track that the page has ready begins, and ends.
void page_play_music(void);
void page_stop_music(void);

/// How far the music has come at the listener's ear, in seconds; negative before.
double page_seconds_heard(void);

/// Hands over the next samples of the track, left and right in turn, of `frames` in all.
void page_take_samples(const int16_t* samples, int count, int frames, int rate);

/// Hands over a picture: red, green, blue and an unused byte for each pixel, bottom row first.
void page_take_picture(int number, const uint8_t* pixels, int width, int height);

#ifdef __cplusplus
}
#endif
