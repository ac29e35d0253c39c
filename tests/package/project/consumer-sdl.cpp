// A program outside the tree that opens a window.
#include <tesmar/platform/hosts/sdl/SDLHost.h>

#include <cstdio>

int main() {
    tesmar::SDLHost host({.title = "consumer", .size = {320, 180}, .scale = 1});
    const bool works = host.window()->frame().size.width == 320;
    std::puts(works ? "works" : "does not work");
    return works ? 0 : 1;
}
