// The picture in place of a video.
#pragma once

#include <cstdint>

// Draws a dark gradient of width × height pixels: 0x00RRGGBB words, rows `stride` bytes apart.
void drawBackdrop(std::uint32_t* pixels, int width, int height, int stride);
