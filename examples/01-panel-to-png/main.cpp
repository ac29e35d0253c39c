// The smallest embedding: the caption panel over a dark picture, as a PNG file.
//
//     01-panel-to-png panel.png
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tesmar/tesmar.h"

#include <cstdio>

using namespace tesmar;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: 01-panel-to-png OUT.png\n");
        return 2;
    }
    // The application's identifier names its preferences file. The bundle also gives access to the
    // library's images.
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.example"));

    // Size in points, and pixels per point.
    HeadlessHost host({568, 320}, 2);

    const auto panel = make<TESMARViewController>();
    panel->setCCEnabled(true);
    host.window()->presentViewController(panel, true);

    // Time passes only in this call. Half a second is enough for the panel's animation.
    host.advance(0.5);

    if (!host.writePNG(argv[1], UIColor::colorWithRed(0.10, 0.12, 0.18, 1))) {
        std::fprintf(stderr, "01-panel-to-png: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
