// What is seen where no video plays.
#pragma once

#include <cstdint>

// Fills the picture: 0x00RRGGBB words, `stride` bytes from row to row.
void drawBackdrop(std::uint32_t* pixels, int width, int height, int stride);
