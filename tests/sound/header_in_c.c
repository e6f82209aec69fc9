/* Shows that the interface can be used from C: this file is compiled as C and called by the test.
 */
#include <fmod.h>

#include <stddef.h>

/* Calls every function with null handles; returns how many of them do not refuse. */
int CountAcceptedNullHandles(void);

int CountAcceptedNullHandles(void) {
    float values[64];
    FMOD_SOUND* sound = NULL;
    FMOD_CHANNEL* channel = NULL;
    const unsigned mode = FMOD_LOOP_OFF | FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESAMPLE |
                          FMOD_ACCURATETIME | FMOD_UNIQUE;
    int accepted = 0;
    accepted += FMOD_System_Create(NULL) == FMOD_OK;
    accepted += FMOD_System_SetOutput(NULL, FMOD_OUTPUTTYPE_ALSA) == FMOD_OK;
    accepted += FMOD_System_Init(NULL, 10, FMOD_INIT_NORMAL, NULL) == FMOD_OK;
    accepted += FMOD_System_CreateStream(NULL, "track.mp3", mode, NULL, &sound) == FMOD_OK;
    accepted += FMOD_System_CreateStream(NULL, NULL, mode, NULL, NULL) == FMOD_OK;
    accepted += FMOD_System_PlaySound(NULL, FMOD_CHANNEL_FREE, NULL, 0, &channel) == FMOD_OK;
    accepted += FMOD_System_PlaySound(NULL, FMOD_CHANNEL_FREE, NULL, 0, NULL) == FMOD_OK;
    accepted += FMOD_System_Update(NULL) == FMOD_OK;
    accepted +=
        FMOD_Channel_GetSpectrum(NULL, values, 64, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE) == FMOD_OK;
    accepted +=
        FMOD_Channel_GetSpectrum(NULL, NULL, 64, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE) == FMOD_OK;
    accepted += FMOD_Sound_Release(NULL) == FMOD_OK;
    accepted += FMOD_System_Close(NULL) == FMOD_OK;
    accepted += FMOD_System_Release(NULL) == FMOD_OK;
    return accepted;
}
