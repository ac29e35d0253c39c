// Records the cairo calls of a frame and replays them without the library. A frame with the same
// calls cannot take less time than the replay.
//
// CairoTape.cpp defines functions with the names of cairo's own, which the dynamic linker prefers.
// Calls on one thread only.
#pragma once

#include <cairo.h>

#include <functional>
#include <vector>

class CairoTape {
  public:
    // Records until stop() or the destructor. Only one tape may record at a time.
    CairoTape();
    ~CairoTape();
    CairoTape(const CairoTape&) = delete;
    CairoTape& operator=(const CairoTape&) = delete;

    void stop();
    // Repeats the recorded calls on pixels of the recorded frame's size, rows `stride` bytes apart.
    void replay(void* pixels, int width, int height, int stride) const;
    std::size_t calls() const { return calls_.size(); }

    // For the functions that replace cairo's. recording() is null while no tape records.
    static CairoTape* recording();
    void record(std::function<void(cairo_t*)> call) { calls_.push_back(std::move(call)); }
    void retain(cairo_surface_t* surface) { surfaces_.push_back(cairo_surface_reference(surface)); }

  private:
    std::vector<std::function<void(cairo_t*)>> calls_;
    std::vector<cairo_surface_t*> surfaces_;
};
