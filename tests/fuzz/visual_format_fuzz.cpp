// Every text is a visual format or gets an error with an offset inside it. Valid formats give
// finite frames at every size of the root; a reused engine computes the same frames as a new one.
//
// Input: one byte for the width of the root, then lines of one byte for the alignment options and a
// format with the boxes a to e; e is inside the scroll view d.
#include "tesmar/platform/layout/internal/LayoutEngine.h"
#include "tesmar/platform/layout/internal/visual_format.h"
#include "tests/platform/layout/LayoutBox.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

using namespace tesmar;

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

bool isNear(double a, double b) {
    return std::abs(a - b) <= 1e-6 * (1 + std::abs(a));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 4096)
        return 0;
    auto root = std::make_shared<LayoutBox>("root");
    NSLayoutConstraint::Views views;
    for (const char* name : {"a", "b", "c", "d"})
        views[name] = root->add(name);
    auto scroll = root->children.back();
    scroll->isScroll = true;
    views["e"] = scroll->add("e");
    root->children[0]->intrinsic[0] = 40;
    root->children[1]->intrinsic[1] = 30;
    root->children[2]->isRightToLeft = true;

    std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    while (!rest.empty()) {
        const auto options =
            static_cast<NSLayoutFormatOptions>((static_cast<unsigned char>(rest[0]) & 0x0f) << 1 |
                                               (static_cast<unsigned char>(rest[0]) & 0xf0) << 4);
        const std::size_t end = rest.find('\n');
        const std::string_view format = rest.substr(1, end == rest.npos ? end : end - 1);
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
        auto result = constraintsFromVisualFormat(format, options, {{"m", 7.5}}, views);
        if (const auto* error = std::get_if<VisualFormatError>(&result))
            require(error->offset <= format.size());
        else
            for (auto& constraint : std::get<std::vector<Ref<NSLayoutConstraint>>>(result))
                root->constraints.push_back(constraint);
    }

    auto boxes = root->children;
    boxes.push_back(scroll->children[0]);
    LayoutEngine reused;
    for (const double width : {data[0] * 3.0, 0.0, 480.0}) {
        root->frame = {0, 0, width, 320};
        reused.layout(*root);
        std::vector<CGRect> frames(boxes.size());
        std::transform(boxes.begin(), boxes.end(), frames.begin(),
                       [](const auto& box) { return box->frame; });
        LayoutEngine().layout(*root);
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            require(finiteRect(boxes[i]->frame) == boxes[i]->frame);
            require(isNear(boxes[i]->frame.minX(), frames[i].minX()));
            require(isNear(boxes[i]->frame.maxY(), frames[i].maxY()));
        }
    }
    return 0;
}
