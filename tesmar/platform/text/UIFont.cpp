#include "tesmar/platform/text/UIFont.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/text/internal/FontCatalogue.h"

namespace tesmar {
namespace {

constexpr CGFloat kDefaultSize = 17;

bool isValidSize(CGFloat size) {
    return std::isfinite(size) && size > 0;
}

// `fallback` if the size is not valid.
CGFloat validSize(CGFloat size, CGFloat fallback) {
    return isValidSize(size) ? std::min(size, UIFont::kLargestSize) : fallback;
}

FaceMetrics metricsOf(const FontFace& face) {
    const auto lock = lockShaping();
    return face.typesetter.metrics(face);
}

} // namespace

Class& UIFont::classObject() {
    static Class& type = *new Class("UIFont", &NSObject::classObject(), allocator<UIFont>());
    return type;
}

Ref<UIFont> UIFont::create(std::string fontName, CGFloat size, FontFaceRef face) {
    auto font = alloc<UIFont>();
    font->fontName_ = std::move(fontName);
    font->pointSize_ = size;
    font->face_ = std::move(face);
    return font;
}

Ref<UIFont> UIFont::fontWithName(std::string_view fontName, CGFloat size) {
    if (!isValidSize(size))
        return nullptr;
    const FontFaceRef face = FontRegistry::catalogue()->find(fontName);
    return face ? create(face->name, std::min(size, kLargestSize), face) : nullptr;
}

Ref<UIFont> UIFont::systemFontOfSize(CGFloat size) {
    const FontFaceRef face = FontRegistry::catalogue()->systemFace();
    return create(face->name, validSize(size, kDefaultSize), face);
}

Ref<UIFont> UIFont::fontWithSize(CGFloat size) const {
    return create(fontName_, validSize(size, pointSize_), face_);
}

std::vector<std::string> UIFont::familyNames() {
    return FontRegistry::catalogue()->familyNames();
}

std::vector<std::string> UIFont::fontNamesForFamilyName(std::string_view familyName) {
    return FontRegistry::catalogue()->facesOfFamily(familyName);
}

bool UIFont::init() {
    face_ = FontRegistry::catalogue()->systemFace();
    fontName_ = face_->name;
    pointSize_ = kDefaultSize;
    return true;
}

std::string UIFont::familyName() const {
    return face_->name == fontName_ ? face_->family : fontName_;
}

CGFloat UIFont::ascender() const {
    return metricsOf(*face_).ascender * pointSize_;
}
CGFloat UIFont::descender() const {
    return metricsOf(*face_).descender * pointSize_;
}

CGFloat UIFont::lineHeight() const {
    const FaceMetrics metrics = metricsOf(*face_);
    return (metrics.ascender - metrics.descender) * pointSize_;
}

bool UIFont::initWithCoder(NSCoder& coder) {
    const auto name = coder.decodeString("UIFontName");
    const auto size = coder.decodeDouble("UIFontPointSize");
    if (!name || name->empty() || !size || !isValidSize(*size))
        return false;
    const auto catalogue = FontRegistry::catalogue();
    const FontFaceRef face = catalogue->find(*name);
    fontName_ = *name;
    pointSize_ = std::min(*size, kLargestSize);
    face_ = face ? face : catalogue->systemFace();
    return true;
}

bool UIFont::encodeWithCoder(NSCoder& coder) const {
    coder.encodeString(fontName_, "UIFontName");
    coder.encodeDouble(pointSize_, "UIFontPointSize");
    return true;
}

bool UIFont::isEqual(const NSObject* other) const {
    if (other == this)
        return true; // every frame asks, for each label
    const auto* font = dynamic_cast<const UIFont*>(other);
    return font && fontName_ == font->fontName_ && pointSize_ == font->pointSize_;
}

} // namespace tesmar
