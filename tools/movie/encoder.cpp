#include "tools/movie/encoder.h"

#include "demo/show.h"

#include <array>
#include <cerrno>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <sys/uio.h>

namespace Movie {

namespace {

constexpr std::size_t rowBytes = static_cast<std::size_t>(Show::width) * Stage::framePixelBytes;

std::vector<std::string> Joined(std::initializer_list<std::vector<std::string>> lists) {
    std::vector<std::string> all;
    for (const auto& list : lists)
        all.insert(all.end(), list.begin(), list.end());
    return all;
}

std::vector<std::string> Words(const std::string& text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

std::string Text(const Stage::Rate& rate) {
    return std::to_string(rate.frames) + "/" + std::to_string(rate.seconds);
}

std::string Size(int scale) {
    return std::to_string(Show::width * scale) + ":" + std::to_string(Show::height * scale);
}

/// Players want an even number of rows; an odd one gets a black one below.
std::string LossyFilter(int scale) {
    return "scale=" + Size(scale) +
           ":flags=lanczos+accurate_rnd+full_chroma_int:out_color_matrix=bt709:out_range=tv,"
           "pad=iw:ceil(ih/2)*2,format=yuv420p";
}

std::string LosslessFilter(int scale) {
    return "scale=" + Size(scale) + ":flags=neighbor,format=bgr0";
}

// Every three seconds a key frame, so that players can jump. The encoder shares the cores with
// those who draw, so it takes little time and more room instead.
std::vector<std::string> PictureOptions(const FilmFormat& format) {
    const std::string keyEvery = std::to_string(3 * format.rate.frames / format.rate.seconds);
    if (format.lossless)
        return Joined({{"-vf", LosslessFilter(format.scale), "-g", keyEvery},
                       Words("-c:v libx264rgb -preset veryfast -qp 0")});
    return Joined({{"-vf", LossyFilter(format.scale), "-g", keyEvery},
                   Words("-c:v libx264 -preset superfast -crf 15 -color_range tv "
                         "-colorspace bt709 -color_primaries bt709 -color_trc bt709")});
}

std::vector<std::string> SoundOptions(const FilmFormat& format) {
    if (format.lossless)
        return Words("-c:a alac");
    return Words("-c:a aac -b:a 256k");
}

std::vector<std::string> FfmpegQuietly() {
    return Words("ffmpeg -nostdin -hide_banner -loglevel error -y");
}

std::vector<std::string> SoundInput(const std::string& path, int rate) {
    return {"-f", "s16le", "-ar", std::to_string(rate), "-ac", "2", "-i", path};
}

std::vector<std::string> FileOptions(const std::string& path, const std::string& comment) {
    return {"-movflags", "+faststart",         "-metadata",   "title=Halvorn :: Nimbrel",
            "-metadata", "comment=" + comment, "file:" + path};
}

std::vector<std::string> FilmCommand(const std::string& path, const FilmFormat& format,
                                     const std::string& soundPath, int soundRate) {
    const std::string size = std::to_string(Show::width) + "x" + std::to_string(Show::height);
    return Joined({
        FfmpegQuietly(),
        {"-f", "rawvideo", "-pixel_format", "bgr0", "-video_size", size},
        {"-framerate", Text(format.rate), "-i", "pipe:0"},
        SoundInput(soundPath, soundRate),
        {"-map", "0:v", "-map", "1:a"},
        PictureOptions(format),
        SoundOptions(format),
        FileOptions(path, format.comment),
    });
}

} // namespace

std::vector<std::string> JoinCommand(const std::string& path, const FilmFormat& format,
                                     const std::string& soundPath, int soundRate) {
    return Joined({
        FfmpegQuietly(),
        {"-f", "concat", "-safe", "0", "-protocol_whitelist", "file,pipe", "-i", "pipe:0"},
        SoundInput(soundPath, soundRate),
        {"-map", "0:v", "-map", "1:a", "-c:v", "copy"},
        SoundOptions(format),
        FileOptions(path, format.comment),
    });
}

Tools::Command FfmpegCommand(const std::vector<std::string>& arguments) {
    return {
        .arguments = arguments, .input = Tools::InputFrom::Pipe, .errors = Tools::OutputTo::Output};
}

Encoder::Encoder(const std::string& path, const FilmFormat& format, const std::string& soundPath,
                 int soundRate)
    : ffmpeg(FfmpegCommand(FilmCommand(path, format, soundPath, soundRate))) {}

void Encoder::Write(Stage::FramePixels pixels) {
    // Rows go out from the top: the order costs nothing here.
    std::array<iovec, Show::height> rows;
    for (std::size_t y = 0; y < rows.size(); ++y) {
        const std::size_t fromBelow = rows.size() - 1 - y;
        rows[y] = {const_cast<unsigned char*>(&pixels[fromBelow * rowBytes]), rowBytes};
    }
    std::size_t first = 0;
    while (first < rows.size()) {
        ssize_t written =
            writev(ffmpeg.InputDescriptor(), &rows[first], static_cast<int>(rows.size() - first));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw std::runtime_error("ffmpeg gave up: " + ffmpeg.Message());
        for (; first < rows.size() && static_cast<std::size_t>(written) >= rows[first].iov_len;
             ++first)
            written -= static_cast<ssize_t>(rows[first].iov_len);
        if (first < rows.size()) {
            rows[first].iov_base = static_cast<char*>(rows[first].iov_base) + written;
            rows[first].iov_len -= static_cast<std::size_t>(written);
        }
    }
}

void Encoder::Finish() {
    ffmpeg.Finish();
}

} // namespace Movie
