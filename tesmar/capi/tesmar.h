/* The caption settings panel for C, and for every language that calls C.
 *
 * C11 and C++. Link with -ltesmar. The whole of it, in a host's own loop:
 *
 *     tesmar_init("org.example.player");
 *     tesmar_panel *panel;
 *     tesmar_panel_options options = {sizeof options, 1280, 720, 2, 0};
 *     tesmar_panel_callbacks callbacks = {sizeof callbacks, NULL, restyle};
 *     tesmar_panel_create(&options, &callbacks, &panel);
 *     tesmar_panel_present(panel, TESMAR_ANIMATED);
 *     while (tesmar_panel_is_presented(panel) == 1) {
 *         ... tesmar_panel_touch(), _wheel() and _key() with the events, each with its time ...
 *         tesmar_advance(now);
 *         if (tesmar_panel_needs_render(panel) == 1)
 *             count = tesmar_panel_render(panel, pixels, sizeof pixels, 1280 * 4, 1, rects, 16);
 *         ... show the rectangles; sleep until the next event, or tesmar_deadline() ...
 *     }
 *
 * Results: functions that can fail return an int, which is negative (an error of enum tesmar_error)
 * when they have failed and then changed nothing unless they say otherwise; tesmar_error_message()
 * tells more. Yes is 1 and no is 0.
 *
 * Threads: the owner is the thread that calls tesmar_init(). All functions must be called on it,
 * in every build, or return TESMAR_ERROR_THREAD; those that say "any thread" are the exceptions.
 *
 * Callbacks come only from inside a call that the host makes, on its thread. They may call
 * anything, tesmar_panel_destroy() of their own panel included. One written in C++ may throw: the
 * library goes on, and the host's call returns TESMAR_ERROR_GENERIC. None may leave by longjmp().
 *
 * Handles are never pointers to memory: one of a panel that is gone, or NULL, is an error
 * (TESMAR_ERROR_INVALID) and nothing worse. Styles are counted, and theirs must be valid.
 *
 * Structures begin with their size in bytes, which the caller sets, and only grow at the end. A
 * program may be older than the library (the rest then has the value 0) and newer (what this
 * library does not know must then be 0, else TESMAR_ERROR_INVALID). None exceeds 4096 bytes.
 *
 * Stability: what this header declares stays, with the same meaning, as long as TESMAR_API_VERSION
 * begins with the same number; the symbols have a version of their own, TESMAR_C_1. Nothing of this
 * holds for the C++ headers.
 *
 * Texts are UTF-8. Points are the units of the panel's layout; a point has `scale` pixels. Times
 * are seconds on any monotonic clock of the host. Numbers that are NaN or out of range are clamped,
 * as the functions tell.
 */
#ifndef TESMAR_CAPI_H
#define TESMAR_CAPI_H

#include <stddef.h>
#include <stdint.h>

#define TESMAR_C_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

#define TESMAR_API_VERSION 1

enum tesmar_error {
    TESMAR_OK = 0,
    TESMAR_ERROR_INVALID = -1, /* an argument, a handle, or a call before tesmar_init() */
    TESMAR_ERROR_NOMEM = -2,
    TESMAR_ERROR_THREAD = -3, /* not the owner's thread */
    TESMAR_ERROR_GENERIC = -4 /* anything else, also an exception of a callback */
};

typedef struct tesmar_panel tesmar_panel;
typedef struct tesmar_style tesmar_style;

typedef struct tesmar_rect { /* pixels, from the top left of the surface */
    int x, y, width, height;
} tesmar_rect;

typedef struct tesmar_area { /* points, from the top left of the surface */
    double x, y, width, height;
} tesmar_area;

typedef struct tesmar_color { /* sRGB, each 0 to 1, not premultiplied */
    double red, green, blue, alpha;
} tesmar_color;

/* --- The process ------------------------------------------------------------------------------ */

/* The TESMAR_API_VERSION of the library that is loaded. Any thread. */
TESMAR_C_API int tesmar_api_version(void);
/* The version of the library, as "0.2.0". Any thread. */
TESMAR_C_API const char* tesmar_version(void);

/* Makes the current thread the owner. `application_id` is a reverse-domain name, which also names
 * the preferences file; it may be called again to change that. TESMAR_ERROR_THREAD while another
 * thread is the owner. */
TESMAR_C_API int tesmar_init(const char* application_id);

/* A text for an error, never NULL: "invalid argument". Any thread. */
TESMAR_C_API const char* tesmar_error_text(int error);
/* What was wrong in the last call on this thread that failed, for developers; never NULL. Valid
 * until the next call on this thread. Any thread. */
TESMAR_C_API const char* tesmar_error_message(void);

/* Receives one line about each problem that the library recovers from. On the thread of the
 * problem; must not use the library. NULL, as initially, for none. */
typedef void (*tesmar_log_function)(const char* message, void* user);
TESMAR_C_API int tesmar_set_log(tesmar_log_function log, void* user);

/* The file of the preferences; NULL or "" for the usual one, below $XDG_CONFIG_HOME. */
TESMAR_C_API int tesmar_set_preferences_path(const char* path);
/* Adds the faces of a font file. TESMAR_ERROR_INVALID if it is no font that can be read. */
TESMAR_C_API int tesmar_add_font_file(const char* path);

/* Moves the time forward to `now` and does what is due: motion, repetition, the panels' own
 * dismissal. An earlier time, NaN and infinity count as the last time. */
TESMAR_C_API int tesmar_advance(double now);
/* 1, and in `*deadline` the time at which tesmar_advance() next has work; 0 if there is none. */
TESMAR_C_API int tesmar_deadline(double* deadline);
/* Calls `wake` when the deadline has become earlier, or a panel has something to paint: once until
 * the next tesmar_advance() or tesmar_deadline(), and not from inside tesmar_advance() or a
 * rendering call, after which the host looks anyway. It may only make the host's loop turn soon.
 * NULL, as initially, for none. */
typedef void (*tesmar_wake_function)(void* user);
TESMAR_C_API int tesmar_set_wake(tesmar_wake_function wake, void* user);
/* Seconds between frames of motion, clamped to 0.001 to 0.1; initially, and for NaN, 1/60. */
TESMAR_C_API int tesmar_set_frame_interval(double seconds);

/* --- Styles ----------------------------------------------------------------------------------- */

/* What captions look like; a snapshot that never changes. Each function that returns one returns a
 * reference that the caller releases. Any thread, except tesmar_style_draw() and _measure(). */

/* Returns `style`. NULL stays NULL. */
TESMAR_C_API tesmar_style* tesmar_style_retain(tesmar_style* style);
/* Ignores NULL. */
TESMAR_C_API void tesmar_style_release(tesmar_style* style);

typedef struct tesmar_style_values {
    size_t size; /* sizeof(tesmar_style_values) */
    tesmar_color text;
    tesmar_color background; /* behind each line; alpha 0: none */
    const char* font_name;   /* NULL or unknown: the system font, which draws it here */
    double font_size;        /* points; 0: 17; else at most 1000 */
    const char* edge;        /* "none" (or NULL), "raised", "depressed", "uniform", "dropShadow" */
    tesmar_color edge_color; /* all 0: black, or white around dark text */
    tesmar_color window;     /* behind all lines; alpha 0: none */
} tesmar_style_values;

/* NULL on failure. */
TESMAR_C_API tesmar_style* tesmar_style_create(const tesmar_style_values* values);
/* The texts in `values` live as long as `style`. Colours that the style lacks are those that are
 * drawn. */
TESMAR_C_API int tesmar_style_get(const tesmar_style* style, tesmar_style_values* values);

typedef struct tesmar_font {
    size_t size;        /* sizeof(tesmar_font) */
    const char* name;   /* PostScript name of the face that draws, which may be a stand-in */
    const char* family; /* of that face */
    const char* file;   /* its file, for other engines; "" on a machine without fonts */
    int index;          /* of the face in the file */
} tesmar_font;

/* The texts in `font` live as long as `style`. */
TESMAR_C_API int tesmar_style_get_font(const tesmar_style* style, tesmar_font* font);

/* What a panel would begin with now: the stored style, else the default. NULL on failure. */
TESMAR_C_API tesmar_style* tesmar_style_stored(void);
TESMAR_C_API tesmar_style* tesmar_style_default(void);
/* Stores the style in the preferences; NULL removes the stored one. */
TESMAR_C_API int tesmar_style_store(const tesmar_style* style);
/* The style as text, valid as long as `style`; see docs/style-json.md. NULL on failure. */
TESMAR_C_API const char* tesmar_style_json(const tesmar_style* style);
/* NULL when the text is refused: tesmar_error_message() tells the line and the reason. */
TESMAR_C_API tesmar_style* tesmar_style_from_json(const char* text, size_t length);

typedef struct tesmar_surface {
    size_t size;       /* sizeof(tesmar_surface) */
    uint32_t* pixels;  /* premultiplied ARGB, native byte order; not owned */
    size_t bytes;      /* of `pixels` */
    int width, height; /* pixels, 1 to 32767 */
    int stride;        /* bytes from row to row, a multiple of 4 */
    double scale;      /* pixels per point, 0.1 to 16 */
} tesmar_surface;

enum tesmar_alignment { TESMAR_LEFT = 0, TESMAR_CENTER = 1, TESMAR_RIGHT = 2 };

/* Draws `text` over what is in the surface, from the top of `area`, with lines broken at its width.
 */
TESMAR_C_API int tesmar_style_draw(const tesmar_style* style, const char* text,
                                   const tesmar_surface* surface, const tesmar_area* area,
                                   int alignment);
/* The size of the text, in points, with lines broken at `max_width` (0: only where the text says).
 */
TESMAR_C_API int tesmar_style_measure(const tesmar_style* style, const char* text, double max_width,
                                      double* width, double* height);

/* --- Panels ----------------------------------------------------------------------------------- */

enum tesmar_panel_flags {
    TESMAR_PANEL_EXTENDED =
        1 /* with presets, edges, a window, more fonts and sizes, undo, a hint */
};

typedef struct tesmar_panel_options {
    size_t size;       /* sizeof(tesmar_panel_options) */
    int width, height; /* of the surface, pixels, clamped to 0 to 32767 */
    double scale;      /* pixels per point, clamped to 0.1 to 16 (0 or less, and NaN: 1) */
    unsigned flags;    /* of tesmar_panel_flags */
} tesmar_panel_options;

typedef struct tesmar_panel_callbacks {
    size_t size; /* sizeof(tesmar_panel_callbacks) */
    void* user;  /* passed to each */
    /* The viewer has changed the style: apply it to the captions. The library keeps its reference;
     * retain the style to keep it. */
    void (*style_changed)(tesmar_panel* panel, tesmar_style* style, void* user);
    /* The viewer has turned captions on (1) or off (0). The host keeps that state. */
    void (*captions_changed)(tesmar_panel* panel, int on, void* user);
    /* The panel is about to leave: dismissed by the host, the viewer or its timer. */
    void (*will_disappear)(tesmar_panel* panel, void* user);
    /* The host's own store of the style, instead of the preferences; both or none. load_style
     * returns a reference that the library releases, or NULL for the default. save_style gets each
     * change, before style_changed. */
    tesmar_style* (*load_style)(tesmar_panel* panel, void* user);
    void (*save_style)(tesmar_panel* panel, tesmar_style* style, void* user);
    /* The panel has left, its motion included: nothing is shown any more, and the host may hide
     * the surface or destroy the panel. */
    void (*did_disappear)(tesmar_panel* panel, void* user);
} tesmar_panel_callbacks;

/* A panel and the surface that it is presented on; nothing is shown yet. `callbacks` may be NULL;
 * it is copied. */
TESMAR_C_API int tesmar_panel_create(const tesmar_panel_options* options,
                                     const tesmar_panel_callbacks* callbacks, tesmar_panel** panel);
/* No callback comes afterwards. Ignores NULL and panels that are gone. */
TESMAR_C_API int tesmar_panel_destroy(tesmar_panel* panel);

TESMAR_C_API int tesmar_panel_set_size(tesmar_panel* panel, int width, int height, double scale);
/* Margins that the panel keeps clear of, in points, clamped to 0 to 65535; initially 0. */
TESMAR_C_API int tesmar_panel_set_safe_area(tesmar_panel* panel, double top, double left,
                                            double bottom, double right);
/* Where the host's captions are, which the panel keeps clear of where there is room; NULL: none. */
TESMAR_C_API int tesmar_panel_set_caption_area(tesmar_panel* panel, const tesmar_area* area);
/* The state that the captions switch shows. */
TESMAR_C_API int tesmar_panel_set_captions_on(tesmar_panel* panel, int on);
/* Seconds without interaction after which the panel leaves; 0, negative (as initially) and NaN:
 * never. */
TESMAR_C_API int tesmar_panel_set_auto_hide(tesmar_panel* panel, double seconds);
/* Whether each change is stored in the preferences; initially not. */
TESMAR_C_API int tesmar_panel_set_remember(tesmar_panel* panel, int remember);
/* Whether a tap outside the card, and dragging the card down, dismiss it; initially neither. */
TESMAR_C_API int tesmar_panel_set_easy_dismissal(tesmar_panel* panel, int easy);
/* Shows that style in the controls, without style_changed. Each appearance begins with the stored
 * one. */
TESMAR_C_API int tesmar_panel_set_style(tesmar_panel* panel, const tesmar_style* style);
/* The style that the controls show. NULL on failure. */
TESMAR_C_API tesmar_style* tesmar_panel_get_style(tesmar_panel* panel);
/* The language closest to a BCP 47 tag; `*used`, unless `used` is NULL, is the tag of that
 * language. */
TESMAR_C_API int tesmar_panel_set_language(tesmar_panel* panel, const char* tag, const char** used);
/* Whether right-to-left languages mirror the places of all controls; initially not. */
TESMAR_C_API int tesmar_panel_set_mirroring(tesmar_panel* panel, int all);
/* Larger labels; clamped to 1 (as initially) to 2. */
TESMAR_C_API int tesmar_panel_set_text_scale(tesmar_panel* panel, double scale);
TESMAR_C_API int tesmar_panel_set_high_contrast(tesmar_panel* panel, int high);
/* A dimmed card for dark rooms; clamped to 0.4 to 1 (as initially). */
TESMAR_C_API int tesmar_panel_set_brightness(tesmar_panel* panel, double brightness);

enum tesmar_motion { TESMAR_AT_ONCE = 0, TESMAR_ANIMATED = 1 };

/* Does nothing while the panel is presented. A host that has slept passes the time on first, by
 * tesmar_advance(): the interval of tesmar_panel_set_auto_hide() counts from there. */
TESMAR_C_API int tesmar_panel_present(tesmar_panel* panel, int motion);
/* Does nothing while it is not. */
TESMAR_C_API int tesmar_panel_dismiss(tesmar_panel* panel, int motion);
/* 1 from tesmar_panel_present() until the panel has gone, its motion included. */
TESMAR_C_API int tesmar_panel_is_presented(tesmar_panel* panel);

/* --- Input: each returns 1 if the panel took the event, 0 if it is the host's to use ------------
 */

enum tesmar_phase { TESMAR_BEGAN = 0, TESMAR_MOVED = 1, TESMAR_ENDED = 2, TESMAR_CANCELLED = 3 };
enum tesmar_source { TESMAR_FINGER = 0, TESMAR_MOUSE = 1 };

/* `id` distinguishes fingers. `x` and `y` in points. `time` should be the event's own: the speed of
 * a flick comes from it. A touch that the panel took when it began is the panel's until it ends. */
TESMAR_C_API int tesmar_panel_touch(tesmar_panel* panel, int phase, int64_t id, double x, double y,
                                    double time, int source);
/* Whether a touch that began there now would be taken. */
TESMAR_C_API int tesmar_panel_wants_touch(tesmar_panel* panel, double x, double y);

#define TESMAR_WHEEL_NOTCH 40.0 /* points */
/* Points; positive scrolls towards the start of the content. */
TESMAR_C_API int tesmar_panel_wheel(tesmar_panel* panel, double x, double y, double dx, double dy,
                                    double time);
/* Only for a mouse: marks the control that a click would reach. Call it when the mouse moves and
 * when its button is released. Returns 0. */
TESMAR_C_API int tesmar_panel_hover(tesmar_panel* panel, double x, double y);
/* The mouse has left the surface. Returns 0. */
TESMAR_C_API int tesmar_panel_end_hover(tesmar_panel* panel);

enum tesmar_key {
    TESMAR_KEY_UP = 0,
    TESMAR_KEY_DOWN,
    TESMAR_KEY_LEFT,
    TESMAR_KEY_RIGHT,
    TESMAR_KEY_NEXT,     /* Tab */
    TESMAR_KEY_PREVIOUS, /* Shift+Tab */
    TESMAR_KEY_SELECT,   /* Enter, Space, OK */
    TESMAR_KEY_BACK,     /* Escape, Back: dismisses */
    TESMAR_KEY_INCREMENT,
    TESMAR_KEY_DECREMENT,
    TESMAR_KEY_FIRST, /* Home */
    TESMAR_KEY_LAST   /* End */
};

/* Pass held keys on with `repeated` 1, as often as they come. No key is taken while no panel shows.
 */
TESMAR_C_API int tesmar_panel_key(tesmar_panel* panel, int key, int repeated, double time);
/* Of all fingers, for example when the host loses the focus. Returns 0. */
TESMAR_C_API int tesmar_panel_cancel_touches(tesmar_panel* panel, double time);
/* 1, and in `area` where the view with that identifier is (docs/drive.md lists them; halves of
 * steppers too), not clipped by what scrolls; 0 if there is none. For tests and tours. */
TESMAR_C_API int tesmar_panel_locate(tesmar_panel* panel, const char* identifier,
                                     tesmar_area* area);

/* --- Pixels: premultiplied ARGB, native byte order ----------------------------------------------
 */

/* Whether any pixel is out of date. */
TESMAR_C_API int tesmar_panel_needs_render(tesmar_panel* panel);
/* Repaints what is out of date in `pixels` (`bytes` long, rows `stride` bytes apart), and returns
 * the number of repainted rectangles in `rects`: at most `capacity`, which must be positive; the
 * last one covers what exceeds that. `age`: how many frames old the content of `pixels` is: 1 for a
 * single buffer, 0 when it is unknown. TESMAR_ERROR_INVALID, and nothing is painted, when `pixels`
 * is too short for the surface. */
TESMAR_C_API int tesmar_panel_render(tesmar_panel* panel, uint32_t* pixels, size_t bytes,
                                     int stride, int age, tesmar_rect* rects, int capacity);
/* Paints these rectangles, whether or not they are out of date. */
TESMAR_C_API int tesmar_panel_repaint(tesmar_panel* panel, uint32_t* pixels, size_t bytes,
                                      int stride, const tesmar_rect* rects, int count);
/* Marks all pixels as out of date. */
TESMAR_C_API int tesmar_panel_invalidate(tesmar_panel* panel);
/* Outside these pixels all is transparent. 1, or 0 (and an empty rectangle) when nothing is shown.
 */
TESMAR_C_API int tesmar_panel_visible_bounds(tesmar_panel* panel, tesmar_rect* bounds);

#ifdef __cplusplus
}
#endif

#endif
