// A style as C sees it: counted, and never changed.
#pragma once

#include "tesmar/capi/tesmar.h"
#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/text/FontRegistry.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

struct tesmar_style {
    // Copies the dictionary; null counts as empty.
    explicit tesmar_style(const tesmar::Ref<tesmar::NSDictionary>& attributes);

    std::atomic<unsigned> count = 1;
    tesmar::Ref<tesmar::NSDictionary> attributes; // nothing modifies it
    std::string fontName;                         // as in the style

    // Made when they are first asked for.
    std::once_flag sourceIsKnown, jsonIsKnown;
    tesmar::FontRegistry::Source source;
    std::string json;
};

namespace tesmar::capi {

struct ReleaseStyle {
    void operator()(tesmar_style* style) const { tesmar_style_release(style); }
};
// One reference.
using StyleRef = std::unique_ptr<tesmar_style, ReleaseStyle>;

inline StyleRef snapshotOf(const Ref<NSDictionary>& attributes) {
    return StyleRef(new tesmar_style(attributes));
}

} // namespace tesmar::capi
