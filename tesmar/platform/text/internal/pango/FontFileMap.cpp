#include "tesmar/platform/text/internal/pango/FontFileMap.h"

#include "tesmar/platform/text/internal/pango/coverage.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace tesmar {
namespace {

// A GObject with a C++ value as its last member, constructed and destroyed with the object.
template <class Base, class Value>
struct Instance {
    Base base;
    Value value;

    static Value& of(gpointer object) { return static_cast<Instance*>(object)->value; }
};

// Registers a subclass of `parent` with that value. Type names must be unique in the process, and
// another copy of this library may have registered its own: even a copy that was unloaded from the
// same address. So the name gets an address and, if need be, further characters.
template <class Base, class BaseClass, class Value>
GType makeType(GType parent, const char* name, void (*fillIn)(BaseClass*)) {
    using Object = Instance<Base, Value>;
    static gpointer parentClass;
    GTypeInfo info{};
    info.class_size = sizeof(BaseClass);
    info.instance_size = sizeof(Object);
    info.class_data = reinterpret_cast<gconstpointer>(fillIn);
    info.class_init = [](gpointer type, gpointer data) {
        parentClass = g_type_class_peek_parent(type);
        G_OBJECT_CLASS(type)->finalize = [](GObject* object) {
            Object::of(object).~Value();
            G_OBJECT_CLASS(parentClass)->finalize(object);
        };
        reinterpret_cast<void (*)(BaseClass*)>(data)(static_cast<BaseClass*>(type));
    };
    info.instance_init = [](GTypeInstance* object, gpointer) { new (&Object::of(object)) Value(); };
    std::string unique = name + std::to_string(reinterpret_cast<std::uintptr_t>(&parentClass));
    while (g_type_from_name(unique.c_str()))
        unique += '+';
    return g_type_register_static(parent, unique.c_str(), &info, G_TYPE_FLAG_NONE);
}

template <class Base>
GObjectPtr<Base> makeObject(GType type) {
    return GObjectPtr<Base>(static_cast<Base*>(g_object_new(type, nullptr)));
}

// ---- Font: a file at a size ----

struct FontValue {
    FontFileRef file;
    double points = 0;
    PangoFontMap* map = nullptr; // not owned: a layout owns its context, which owns the map

    int length(double fontUnits) const {
        return typesettingUnits(fontUnits * points / file->unitsPerEm());
    }
};
using FontObject = Instance<PangoFont, FontValue>;

PangoFontDescription* describe(PangoFont* font) {
    PangoFontDescription* const description = pango_font_description_new();
    pango_font_description_set_family_static(description, "sans-serif");
    pango_font_description_set_absolute_size(description,
                                             FontObject::of(font).points * PANGO_SCALE);
    return description;
}

PangoFontMetrics* fontMetrics(PangoFont* font, PangoLanguage*) {
    const FontValue& value = FontObject::of(font);
    const hb_font_extents_t extents = value.file->extents();
    // Pango has no other public function that allocates a record.
    PangoFontMetrics* const metrics = pango_font_get_metrics(nullptr, nullptr);
    metrics->ascent = value.length(extents.ascender);
    metrics->descent = value.length(-extents.descender);
    metrics->height = metrics->ascent + metrics->descent;
    metrics->approximate_char_width = metrics->approximate_digit_width =
        typesettingUnits(value.points / 2);
    return metrics;
}

void glyphExtents(PangoFont* font, PangoGlyph pangoGlyph, PangoRectangle* ink,
                  PangoRectangle* logical) {
    const FontValue& value = FontObject::of(font);
    const bool isEmpty = pangoGlyph == PANGO_GLYPH_EMPTY;
    const hb_codepoint_t glyph = glyphIndex(pangoGlyph);
    if (ink) {
        hb_glyph_extents_t extents{};
        if (!isEmpty)
            hb_font_get_glyph_extents(value.file->font(), glyph, &extents);
        *ink = {value.length(extents.x_bearing), -value.length(extents.y_bearing),
                value.length(extents.width), -value.length(extents.height)};
    }
    if (logical) {
        const hb_font_extents_t extents = value.file->extents();
        const int ascent = value.length(extents.ascender);
        const int advance =
            isEmpty ? 0 : value.length(hb_font_get_glyph_h_advance(value.file->font(), glyph));
        *logical = {0, -ascent, advance, ascent + value.length(-extents.descender)};
    }
}

void fillInFont(PangoFontClass* type) {
    type->describe = type->describe_absolute = describe;
    type->get_metrics = fontMetrics;
    type->get_glyph_extents = glyphExtents;
    type->get_font_map = [](PangoFont* font) { return FontObject::of(font).map; };
    type->get_coverage = [](PangoFont* font, PangoLanguage*) {
        return static_cast<PangoCoverage*>(g_object_ref(coverageOf(*FontObject::of(font).file)));
    };
    type->create_hb_font = [](PangoFont* font) {
        const FontValue& value = FontObject::of(font);
        hb_font_t* const sized = hb_font_create_sub_font(value.file->font());
        hb_font_set_scale(sized, typesettingUnits(value.points), typesettingUnits(value.points));
        return sized;
    };
}

GObjectPtr<PangoFont> makeFont(FontFileRef file, double points, PangoFontMap* map) {
    static const GType type =
        makeType<PangoFont, PangoFontClass, FontValue>(PANGO_TYPE_FONT, "FileFont", fillInFont);
    auto font = makeObject<PangoFont>(type);
    FontObject::of(font.get()) = {std::move(file), points, map};
    return font;
}

// ---- Font set: the face, then its fallback fonts ----

struct SetValue {
    FontFileRef face;
    const std::vector<FontFileRef>* fallback = nullptr; // never destroyed; null for none
    double points = 0;
    PangoFontMap* map = nullptr;
    PangoLanguage* language = nullptr;
    std::vector<GObjectPtr<PangoFont>> fonts; // made so far

    // Null after the last one.
    PangoFont* font(std::size_t i) {
        if (i > (fallback ? fallback->size() : 0))
            return nullptr;
        while (fonts.size() <= i)
            fonts.push_back(
                makeFont(fonts.empty() ? face : (*fallback)[fonts.size() - 1], points, map));
        return fonts[i].get();
    }
};
using SetObject = Instance<PangoFontset, SetValue>;

void fillInSet(PangoFontsetClass* type) {
    type->foreach = [](PangoFontset* set, PangoFontsetForeachFunc visit, gpointer data) {
        SetValue& value = SetObject::of(set);
        for (std::size_t i = 0; PangoFont* font = value.font(i); ++i)
            if (visit(set, font, data))
                return;
    };
    type->get_font = [](PangoFontset* set, guint character) {
        SetValue& value = SetObject::of(set);
        for (std::size_t i = 0; PangoFont* font = value.font(i); ++i)
            if (pango_font_has_char(font, character))
                return static_cast<PangoFont*>(g_object_ref(font));
        return static_cast<PangoFont*>(g_object_ref(value.font(0)));
    };
    type->get_metrics = [](PangoFontset* set) {
        SetValue& value = SetObject::of(set);
        return fontMetrics(value.font(0), value.language);
    };
    type->get_language = [](PangoFontset* set) { return SetObject::of(set).language; };
}

// ---- Font map ----

struct MapValue {
    FontFileRef face;
    FallbackFonts fallbackFonts = nullptr;
};
using MapObject = Instance<PangoFontMap, MapValue>;

double pointSize(const PangoFontDescription* description) {
    return static_cast<double>(pango_font_description_get_size(description)) / PANGO_SCALE;
}

PangoFont* loadFont(PangoFontMap* map, PangoContext*, const PangoFontDescription* description) {
    return makeFont(MapObject::of(map).face, pointSize(description), map).release();
}

PangoFontset* loadSet(PangoFontMap* map, PangoContext*, const PangoFontDescription* description,
                      PangoLanguage* language) {
    static const GType type = makeType<PangoFontset, PangoFontsetClass, SetValue>(
        PANGO_TYPE_FONTSET, "FileFontset", fillInSet);
    const MapValue& value = MapObject::of(map);
    auto set = makeObject<PangoFontset>(type);
    SetValue& made = SetObject::of(set.get());
    made.face = value.face;
    if (value.fallbackFonts)
        made.fallback = &value.fallbackFonts(pango_font_description_get_family(description),
                                             language ? pango_language_to_string(language) : "");
    made.points = pointSize(description);
    made.map = map;
    made.language = language;
    return set.release();
}

void fillInMap(PangoFontMapClass* type) {
    type->load_font = loadFont;
    type->load_fontset = loadSet;
    type->get_serial = [](PangoFontMap*) -> guint { return 1; };
    type->list_families = [](PangoFontMap*, PangoFontFamily*** families, int* count) {
        *families = nullptr;
        *count = 0;
    };
}

} // namespace

GObjectPtr<PangoFontMap> makeFontFileMap(FontFileRef face, FallbackFonts fallbackFonts) {
    static const GType type = makeType<PangoFontMap, PangoFontMapClass, MapValue>(
        PANGO_TYPE_FONT_MAP, "FileFontMap", fillInMap);
    auto map = makeObject<PangoFontMap>(type);
    MapObject::of(map.get()) = {std::move(face), fallbackFonts};
    return map;
}

const FontFileRef& fileOf(PangoFont* font) {
    return FontObject::of(font).file;
}

double pointSizeOf(PangoFont* font) {
    return FontObject::of(font).points;
}

hb_codepoint_t glyphIndex(PangoGlyph glyph) {
    return glyph & PANGO_GLYPH_UNKNOWN_FLAG ? 0 : glyph;
}

} // namespace tesmar
