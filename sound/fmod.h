/*
 * The sound library's C interface, as far as the demo calls it: one MP3, played once, and its
 * spectrum. Only what stands here is offered; any other value handed to these functions is
 * answered with FMOD_FAILED_ARGUMENT.
 *
 * Handles:  owned by the library. A null handle is safe in every call.
 * Threads:  call from one thread. Each playing channel has two threads of the library's own: one
 *           decodes, the other feeds the sound card.
 * Failure:  told by the result alone, never on the terminal. A sound device that is missing, busy
 *           or lost is no failure: the music then plays in silence, at the same speed, and the
 *           spectrum goes on.
 */
#ifndef VELL_SOUND_FMOD_H
#define VELL_SOUND_FMOD_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct FMOD_SYSTEM FMOD_SYSTEM;   /* the sound system and its channels */
typedef struct FMOD_SOUND FMOD_SOUND;     /* one track */
typedef struct FMOD_CHANNEL FMOD_CHANNEL; /* one playing track; belongs to its system */

/* What a call answers. The failures are this library's own. */
typedef enum FMOD_RESULT {
    FMOD_OK = 0,
    FMOD_FAILED_ARGUMENT, /* a null handle or pointer, or a value that is not offered */
    FMOD_FAILED_ORDER,    /* the system is not initialised, or is so already */
    FMOD_FAILED_FILE,     /* the file is missing, or nothing in it can be played */
    FMOD_FAILED_DAMAGED,  /* the file ends early or breaks off; what could be read plays */
    FMOD_FAILED_RESOURCES /* no channel is free, or the machine is out of memory or threads */
} FMOD_RESULT;

/* Where the sound goes: the ALSA device "default". */
enum { FMOD_OUTPUTTYPE_ALSA = 12 };

/* How the system starts. */
enum { FMOD_INIT_NORMAL = 0 };

/*
 * How a track is opened. All of these describe what the library does anyway: the track is decoded
 * by software while it plays, and its length is exact; it plays once, through no 3D placement.
 * They may be given in any combination, and change nothing.
 */
enum {
    FMOD_LOOP_OFF = 0x1,
    FMOD_2D = 0x8,
    FMOD_SOFTWARE = 0x40,
    FMOD_CREATESAMPLE = 0x100,
    FMOD_ACCURATETIME = 0x4000,
    FMOD_UNIQUE = 0x20000
};

/* Takes any channel that is not playing. */
enum { FMOD_CHANNEL_FREE = -1 };

/*
 * Triangular window over a block of L samples, numbered n = 0 .. L - 1:
 * w(n) = 1 - |n - L/2| / (L/2). The other usual windows are taken by their numbers: 0 none
 * (rectangle), 2 Hamming, 3 Hann, 4 Blackman.
 */
enum { FMOD_DSP_FFT_WINDOW_TRIANGLE = 1 };

/* Makes a sound system that is not initialised yet. The caller ends it with FMOD_System_Release. */
FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system);

/* Chooses where the sound goes, before FMOD_System_Init: FMOD_OUTPUTTYPE_ALSA, as without it. */
FMOD_RESULT FMOD_System_SetOutput(FMOD_SYSTEM* system, int output);

/*
 * Starts the system. `channels` (1 .. 64) is how many tracks can play at once; `flags` is
 * FMOD_INIT_NORMAL and `extraDriverData` null. No device is opened yet.
 */
FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int channels, unsigned int flags,
                             void* extraDriverData);

/*
 * Opens the MP3 at the path `name`, to be played as 16 bit stereo at its own rate. Sample 0 is the
 * first sample of the music: what the encoder put before and behind it is cut away where the file
 * says how much. `mode` is any combination of the flags above, `extendedInfo` is null.
 *
 * The file is read through once for its length and stays open, so that it may be renamed or
 * removed; a playing channel takes a megabyte of memory, however long the track is. Anything but a
 * regular file, such as a pipe, is refused.
 *
 * `*sound` becomes the track, or null when nothing can be played. A damaged file answers
 * FMOD_FAILED_DAMAGED and still gives the track as far as it goes. The caller ends it with
 * FMOD_Sound_Release.
 */
FMOD_RESULT FMOD_System_CreateStream(FMOD_SYSTEM* system, const char* name, unsigned int mode,
                                     void* extendedInfo, FMOD_SOUND** sound);

/*
 * Plays `sound` once from its start. `channelIndex` is FMOD_CHANNEL_FREE and `paused` 0.
 * Returns when the music is heard, 50 ms after the device took it at the latest. `*channel`
 * becomes the playing channel (null on failure); it belongs to the system and stays valid until
 * FMOD_System_Release.
 */
FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, int channelIndex, FMOD_SOUND* sound,
                                  int paused, FMOD_CHANNEL** channel);

/* Called once a frame. Nothing waits for it: the device is fed by a thread of its own. */
FMOD_RESULT FMOD_System_Update(FMOD_SYSTEM* system);

/*
 * Writes the spectrum of what is being heard into `values`: `count` values, a power of two from 2
 * to 8192, of one side (`channelOffset` 0 left, 1 right; a mono track has the same on both).
 *
 * Values:  linear amplitudes from the last 2 * count samples heard; a sine of full scale on the
 *          centre of a bin reads 1.0 there. Value 0 is the constant part: full scale reads 1.0.
 * Bins:    value k is centred on k * rate / (2 * count) Hz; the range is 0 to rate / 2. At 44.1
 *          kHz with 64 values a bin is 344.53 Hz wide and the last one is centred on 21,705.5 Hz.
 * Silence: all values are 0 before the first sample is heard, after the last one, and whenever
 *          the call fails although `values` and `count` are good (such as for a null channel).
 *
 * Only the first call with another `count` than before takes memory.
 */
FMOD_RESULT FMOD_Channel_GetSpectrum(FMOD_CHANNEL* channel, float* values, int count,
                                     int channelOffset, int windowType);

/* Stops every channel that plays `sound` and frees it. */
FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound);

/* Stops every channel and takes the system back to before FMOD_System_Init. */
FMOD_RESULT FMOD_System_Close(FMOD_SYSTEM* system);

/* Closes and frees the system and its channels. Sounds are not its own and remain. */
FMOD_RESULT FMOD_System_Release(FMOD_SYSTEM* system);

#ifdef __cplusplus
}
#endif

#endif
