#include "sound/player.h"

#include <algorithm>
#include <utility>

namespace Vell::Sound {

void Channel::Play(std::shared_ptr<const Track> piece, const OutputMaker& makeOutput) {
    Stop();
    output = makeOutput(piece);
    track = std::move(piece);
}

void Channel::Stop() {
    output.reset();
    track.reset();
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

Channel* Player::Play(std::shared_ptr<const Track> track, const OutputMaker& makeOutput) {
    for (std::size_t i = 0; i < offered; ++i) {
        if (channels[i]->IsPlaying())
            continue;
        channels[i]->Play(std::move(track), makeOutput);
        return channels[i].get();
    }
    return nullptr;
}

void Player::Stop(const Track* track) {
    for (const auto& channel : channels)
        if (channel->Has(track))
            channel->Stop();
}

} // namespace Vell::Sound
