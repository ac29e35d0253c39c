// The very cairo calls that a frame makes, taken down and played again without the library: the
// floor below which no frame of the same pixels can come.
//
// Linked into the program, this unit stands before cairo's own functions of the same names.
#pragma once

#include <cairo.h>

#include <functional>
#include <vector>

class CairoTape {
  public:
    // Takes down what is drawn, until it is destroyed; one tape at a time.
    CairoTape();
    ~CairoTape();
    CairoTape(const CairoTape&) = delete;
    CairoTape& operator=(const CairoTape&) = delete;

    void stop();
    // Draws it all again into pixels of the same size.
    void play(void* pixels, int width, int height, int stride) const;
    std::size_t calls() const { return calls_.size(); }

    // For the functions that stand before cairo's.
    static CairoTape* running();
    void take(std::function<void(cairo_t*)> call) { calls_.push_back(std::move(call)); }
    void keep(cairo_surface_t* surface) { kept_.push_back(cairo_surface_reference(surface)); }

  private:
    std::vector<std::function<void(cairo_t*)>> calls_;
    std::vector<cairo_surface_t*> kept_;
};
