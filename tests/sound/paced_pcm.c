/*
 * An ALSA device without hardware that behaves like a card: it plays in real time, runs dry when
 * it is not fed, and can be told to fail. Loaded by ALSA itself from a test's configuration:
 *
 *   pcm.!default {
 *       type paced file FILE [dry_at FRAMES] [gone_at FRAMES] [stall_at FRAMES] [latency FRAMES]
 *       [busy 1]
 *   }
 *
 * file     everything that is handed over is written there
 * dry_at   having played this many frames it runs dry once, as if the machine had been busy
 * gone_at  having been handed this many frames it is unplugged
 * stall_at having played this many frames it stops, without an error
 * latency  frames that it holds back behind its buffer
 * busy     1: another program holds it
 */
#include <alsa/asoundlib.h>
#include <alsa/pcm_external.h>

#include <errno.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

enum { bytesPerFrame = 4, tick = 2000000 /* nanoseconds between two looks at the clock */ };

typedef struct {
    snd_pcm_ioplug_t io;
    FILE* file;
    long dryAt;   /* -1: never */
    long goneAt;  /* -1: never */
    long stallAt; /* -1: never */
    long busy;
    long latency;
    int wasDry;
    int64_t startTime; /* nanoseconds */
    int64_t handedOver;
    int64_t handedAtPrepare;
} Paced;

static int64_t Now(void) {
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (int64_t)now.tv_sec * 1000000000 + now.tv_nsec;
}

static void SetTimer(const Paced* paced, long nanoseconds) {
    struct itimerspec spec = {{0, nanoseconds}, {0, nanoseconds}};
    timerfd_settime(paced->io.poll_fd, 0, &spec, NULL);
}

static int Start(snd_pcm_ioplug_t* io) {
    Paced* paced = io->private_data;
    paced->startTime = Now();
    SetTimer(paced, tick);
    return 0;
}

static int Stop(snd_pcm_ioplug_t* io) {
    SetTimer(io->private_data, 0);
    return 0;
}

static int Prepare(snd_pcm_ioplug_t* io) {
    Paced* paced = io->private_data;
    paced->startTime = 0;
    paced->handedAtPrepare = paced->handedOver;
    return 0;
}

static int64_t Queued(const Paced* paced) {
    return paced->handedOver - paced->handedAtPrepare;
}

static int64_t Played(const Paced* paced) {
    const int running =
        paced->io.state == SND_PCM_STATE_RUNNING || paced->io.state == SND_PCM_STATE_DRAINING;
    return running ? (Now() - paced->startTime) * paced->io.rate / 1000000000 : 0;
}

static snd_pcm_sframes_t Pointer(snd_pcm_ioplug_t* io) {
    Paced* paced = io->private_data;
    int64_t played = Played(paced);
    if (paced->dryAt >= 0 && !paced->wasDry && played >= paced->dryAt) {
        paced->wasDry = 1;
        return -EPIPE;
    }
    if (paced->stallAt >= 0 && played > paced->stallAt)
        played = paced->stallAt;
    if (played > Queued(paced)) {
        if (io->state != SND_PCM_STATE_DRAINING)
            return -EPIPE;
        played = Queued(paced);
    }
    return (snd_pcm_sframes_t)(played % (int64_t)io->buffer_size);
}

static int Delay(snd_pcm_ioplug_t* io, snd_pcm_sframes_t* delay) {
    const Paced* paced = io->private_data;
    *delay = (snd_pcm_sframes_t)(Queued(paced) - Played(paced) + paced->latency);
    return 0;
}

static snd_pcm_sframes_t Transfer(snd_pcm_ioplug_t* io, const snd_pcm_channel_area_t* areas,
                                  snd_pcm_uframes_t offset, snd_pcm_uframes_t size) {
    Paced* paced = io->private_data;
    if (paced->goneAt >= 0 && paced->handedOver >= paced->goneAt)
        return -ENODEV;
    const char* frames = (const char*)areas->addr + areas->first / 8 + offset * bytesPerFrame;
    fwrite(frames, bytesPerFrame, size, paced->file);
    paced->handedOver += (int64_t)size;
    return (snd_pcm_sframes_t)size;
}

static int Close(snd_pcm_ioplug_t* io) {
    Paced* paced = io->private_data;
    close(io->poll_fd);
    fclose(paced->file);
    free(paced);
    return 0;
}

/* Takes the timer's ticks away and tells whether there is room for a period. */
static int PollEvents(snd_pcm_ioplug_t* io, struct pollfd* descriptors, unsigned count,
                      unsigned short* events) {
    uint64_t ticks;
    *events = 0;
    if (count == 1 && (descriptors->revents & POLLIN) && read(io->poll_fd, &ticks, 8) == 8) {
        const snd_pcm_sframes_t room = snd_pcm_avail(io->pcm);
        if (room < 0 || room >= (snd_pcm_sframes_t)io->period_size)
            *events = POLLOUT;
    }
    return 0;
}

static const snd_pcm_ioplug_callback_t callbacks = {
    .start = Start,
    .stop = Stop,
    .pointer = Pointer,
    .transfer = Transfer,
    .close = Close,
    .prepare = Prepare,
    .poll_revents = PollEvents,
    .delay = Delay,
};

static int Restrict(snd_pcm_ioplug_t* io) {
    static const unsigned accesses[] = {SND_PCM_ACCESS_RW_INTERLEAVED};
    static const unsigned formats[] = {SND_PCM_FORMAT_S16};
    int error = snd_pcm_ioplug_set_param_list(io, SND_PCM_IOPLUG_HW_ACCESS, 1, accesses);
    if (error >= 0)
        error = snd_pcm_ioplug_set_param_list(io, SND_PCM_IOPLUG_HW_FORMAT, 1, formats);
    if (error >= 0)
        error = snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_CHANNELS, 2, 2);
    if (error >= 0)
        error = snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_RATE, 8000, 48000);
    if (error >= 0)
        error = snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_PERIOD_BYTES, 64, 1 << 16);
    if (error >= 0)
        error = snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_PERIODS, 2, 64);
    return error;
}

static int Open(Paced* paced, snd_pcm_t** pcm, const char* name, snd_pcm_stream_t stream,
                int mode) {
    paced->io.version = SND_PCM_IOPLUG_VERSION;
    paced->io.name = "paced";
    paced->io.callback = &callbacks;
    paced->io.private_data = paced;
    paced->io.poll_fd = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    paced->io.poll_events = POLLIN;
    int error = snd_pcm_ioplug_create(&paced->io, name, stream, mode);
    if (error < 0)
        return error;
    error = Restrict(&paced->io);
    if (error < 0) {
        snd_pcm_ioplug_delete(&paced->io); /* closes through the callback above */
        return error;
    }
    *pcm = paced->io.pcm;
    return 0;
}

static void ReadSetting(snd_config_t* entry, Paced* paced, const char** path) {
    const char* id = "";
    snd_config_get_id(entry, &id);
    if (strcmp(id, "file") == 0)
        snd_config_get_string(entry, path);
    else if (strcmp(id, "dry_at") == 0)
        snd_config_get_integer(entry, &paced->dryAt);
    else if (strcmp(id, "gone_at") == 0)
        snd_config_get_integer(entry, &paced->goneAt);
    else if (strcmp(id, "stall_at") == 0)
        snd_config_get_integer(entry, &paced->stallAt);
    else if (strcmp(id, "busy") == 0)
        snd_config_get_integer(entry, &paced->busy);
    else if (strcmp(id, "latency") == 0)
        snd_config_get_integer(entry, &paced->latency);
}

SND_PCM_PLUGIN_DEFINE_FUNC(paced) {
    (void)root;
    Paced* paced = calloc(1, sizeof(Paced));
    if (!paced)
        return -ENOMEM;
    paced->dryAt = -1;
    paced->goneAt = -1;
    paced->stallAt = -1;
    const char* path = "";
    snd_config_iterator_t i, next;
    snd_config_for_each(i, next, conf) {
        ReadSetting(snd_config_iterator_entry(i), paced, &path);
    }
    paced->file = fopen(path, "wb");
    if (!paced->file || paced->busy) {
        const int error = paced->file ? -EBUSY : -ENOENT;
        if (paced->file)
            fclose(paced->file);
        free(paced);
        return error;
    }
    return Open(paced, pcmp, name, stream, mode);
}

SND_PCM_PLUGIN_SYMBOL(paced);
