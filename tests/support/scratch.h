#pragma once

#include "tools/stage/scratch.h"

#include <filesystem>
#include <string>
#include <vector>

/// A temporary working directory for one test: made and entered by the constructor, left and
/// removed by the destructor. "Vell_log.html" and every relative path land in it.
using ScratchDir = Tools::ScratchWorkingFolder;

/// Writes `text` byte for byte; folders on the way are made. Throws std::runtime_error on failure,
/// as every writer here does: a test whose input is missing must not go on.
void WriteFile(const std::filesystem::path& path, const std::string& text);

/// Reads a whole file; throws std::runtime_error when it cannot be opened.
std::string ReadFile(const std::filesystem::path& path);

/// Writes an 8-bit PNG. `channels`: 1 grey, 2 grey + alpha, 3 RGB, 4 RGBA; top row first.
void WritePng(const std::filesystem::path& path, int width, int height, int channels,
              const std::vector<unsigned char>& bytes);

/// Writes an RGB JPEG without chroma subsampling; top row first; quality 1..100.
void WriteJpeg(const std::filesystem::path& path, int width, int height,
               const std::vector<unsigned char>& rgb, int quality = 100);

/// Writes a JPEG of one grey channel; top row first.
void WriteGreyJpeg(const std::filesystem::path& path, int width, int height,
                   const std::vector<unsigned char>& grey, int quality = 100);
