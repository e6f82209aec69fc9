#include "sound/player.h"

#include "sound/streamedtrack.h"

#include <algorithm>
#include <utility>

namespace Vell::Sound {

void Channel::Play(std::shared_ptr<const Mp3File> toPlay, const OutputMaker& makeOutput) {
    Stop();
    auto piece = std::make_shared<StreamedTrack>(toPlay);
    output = makeOutput(piece);
    track = std::move(piece);
    file = std::move(toPlay);
}

void Channel::Stop() {
    output.reset();
    track.reset();
    file.reset();
}

bool Channel::IsPlaying() const {
    return output && output->FramesHeard() < track->Frames();
}

void Channel::GetSpectrum(int side, std::span<float> values, Window window) {
    if (output)
        spectrum.Measure(*track, output->FramesHeard(), side, values, window);
    else
        std::fill(values.begin(), values.end(), 0.0f);
}

void Player::Open(int count) {
    const auto wanted = static_cast<std::size_t>(count);
    while (channels.size() < wanted)
        channels.push_back(std::make_unique<Channel>());
    offered = wanted;
}

void Player::Close() {
    for (const auto& channel : channels)
        channel->Stop();
    offered = 0;
}

Channel* Player::Play(std::shared_ptr<const Mp3File> file, const OutputMaker& makeOutput) {
    for (std::size_t i = 0; i < offered; ++i) {
        if (channels[i]->IsPlaying())
            continue;
        channels[i]->Play(std::move(file), makeOutput);
        return channels[i].get();
    }
    return nullptr;
}

void Player::Stop(const Mp3File* file) {
    for (const auto& channel : channels)
        if (channel->Has(file))
            channel->Stop();
}

} // namespace Vell::Sound
