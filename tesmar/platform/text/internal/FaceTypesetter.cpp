#include "tesmar/platform/text/internal/FaceTypesetter.h"

#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/text/internal/FontFace.h"
#include "tesmar/platform/text/internal/fallback_fonts.h"
#include "tesmar/platform/text/internal/plain_text.h"

#include <atomic>
#include <dlfcn.h>

namespace tesmar {
namespace {

constexpr const char* kModule = "tesmar-pango" TESMAR_MODULE_SUFFIX; // set by the build

std::atomic<bool> mustReportMissingModule{false};

// Null if the module is missing, or is another file of that name.
MakeComplexText loadComplexText() {
    void* const module = dlopen(kModule, RTLD_NOW | RTLD_LOCAL);
    void* const make = module ? dlsym(module, kMakeComplexText) : nullptr;
    mustReportMissingModule = !make;
    return reinterpret_cast<MakeComplexText>(make);
}

} // namespace

std::unique_lock<std::recursive_mutex> lockShaping() {
    static auto* const mutex = new std::recursive_mutex; // never destroyed
    return std::unique_lock(*mutex);
}

FaceTypesetter::~FaceTypesetter() {
    const auto lock = lockShaping();
    complex_.reset();
    file_.reset();
}

const FontFileRef& FaceTypesetter::file(const FontFace& face) {
    if (!file_)
        file_ = std::make_shared<FontFile>(face.source.file, face.source.index);
    return file_;
}

TypesetText FaceTypesetter::typeset(const FontFace& face, const TypesettingRequest& request) {
    if (face.source.file.empty())
        return {};
    const FontFileRef& file = this->file(face);
    const bool asWritten = face.letters() == Letters::asWritten;
    if (auto plain = asWritten ? typesetPlainText(file, request) : std::nullopt)
        return *std::move(plain);
    static const MakeComplexText make = loadComplexText();
    if (!make)
        return typesetAsPlainText(file, request);
    if (!complex_)
        complex_.reset(make(file, &fallbackFonts));
    TypesettingRequest inLetters = request;
    inLetters.letters = face.letters();
    return complex_->typeset(inLetters);
}

void reportMissingTypesetter() {
    if (mustReportMissingModule.exchange(false))
        diagnostic(std::string("text is not wrapped, truncated or reordered without ") + kModule);
}

FaceMetrics FaceTypesetter::metrics(const FontFace& face) {
    if (face.source.file.empty())
        return {};
    FontFile& file = *this->file(face);
    const hb_font_extents_t extents = file.extents();
    const double size = file.unitsPerEm();
    return {extents.ascender / size, extents.descender / size};
}

} // namespace tesmar
