/* The panel in a host that is written in C: presents it, taps the yellow swatch as a viewer would, and
 * writes the picture to a file, over grey. */
#include "tesmar/capi/tesmar.h"

#include <stdio.h>

enum { WIDTH = 720, HEIGHT = 1280 };

static uint32_t pixels[WIDTH * HEIGHT]; /* premultiplied ARGB */

static void restyle(tesmar_panel *panel, tesmar_style *style, void *user) {
    tesmar_style_values values = {.size = sizeof values};
    (void)panel, (void)user;
    tesmar_style_get(style, &values);
    printf("text in %g, %g, %g, %g points of %s\n", values.text.red, values.text.green,
           values.text.blue, values.font_size, values.font_name);
}

static int failed(const char *what) {
    fprintf(stderr, "05-panel-from-c: %s: %s\n", what, tesmar_error_message());
    return 1;
}

static int write_picture(const char *path) {
    FILE *file = fopen(path, "wb");
    if (!file)
        return perror(path), 1;
    fprintf(file, "P6 %d %d 255\n", WIDTH, HEIGHT);
    for (int i = 0; i < WIDTH * HEIGHT; ++i) {
        uint32_t pixel = pixels[i], behind = 128 * (255 - (pixel >> 24)) / 255;
        for (int shift = 16; shift >= 0; shift -= 8)
            putc((int)((pixel >> shift & 255) + behind), file);
    }
    return fclose(file) ? (perror(path), 1) : 0;
}

int main(int argc, char **argv) {
    if (argc != 2)
        return fprintf(stderr, "usage: 05-panel-from-c PICTURE.ppm\n"), 2;
    tesmar_panel *panel;
    tesmar_panel_options options = {sizeof options, WIDTH, HEIGHT, 2, 0};
    tesmar_panel_callbacks callbacks = {.size = sizeof callbacks, .style_changed = restyle};
    if (tesmar_init("org.tesmar.example") || tesmar_panel_create(&options, &callbacks, &panel) ||
        tesmar_panel_present(panel, TESMAR_AT_ONCE))
        return failed("no panel");

    double now = 0;
    tesmar_area swatch;
    tesmar_advance(now += 1);
    if (tesmar_panel_locate(panel, "textColorPicker.4", &swatch) != 1)
        return failed("no swatch");
    double x = swatch.x + swatch.width / 2, y = swatch.y + swatch.height / 2;
    tesmar_panel_touch(panel, TESMAR_BEGAN, 1, x, y, now, TESMAR_FINGER);
    tesmar_panel_touch(panel, TESMAR_ENDED, 1, x, y, now, TESMAR_FINGER);
    tesmar_advance(now += 1);

    tesmar_rect rect;
    if (tesmar_panel_render(panel, pixels, sizeof pixels, WIDTH * 4, 0, &rect, 1) < 0)
        return failed("no picture");
    tesmar_panel_destroy(panel);
    return write_picture(argv[1]);
}
