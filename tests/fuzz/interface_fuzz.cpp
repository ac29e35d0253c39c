// Every text either is a valid interface file or gets a problem. The views of a valid file have
// finite frames at every size and can be drawn.
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/interface_file.h"

#include <cstdlib>

using namespace tesmar;

namespace {

void requireFiniteFrames(const UIView& view) {
    if (finiteRect(view.frame()) != view.frame())
        std::abort();
    for (const auto& subview : view.subviews())
        requireFiniteFrames(*subview);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string problem;
    const auto objects = instantiateInterface({reinterpret_cast<const char*>(data), size},
                                              NSBundle::mainBundle(), problem);
    if (!objects) {
        if (problem.empty())
            std::abort();
        return 0;
    }
    constexpr int kSide = 48;
    std::uint32_t pixels[kSide * kSide] = {};
    for (const auto& object : *objects) {
        const auto view = as<UIView>(object);
        if (!view || as<UIWindow>(object))
            continue;
        const auto window = UIWindow::windowWithSize({kSide, kSide}, 1);
        window->addSubview(view);
        for (const double side : {48.0, 0.0, 5000.0}) {
            view->setFrame({0, 0, side, side});
            view->layoutIfNeeded();
            requireFiniteFrames(*view);
        }
        window->render(pixels, kSide * 4);
    }
    return 0;
}
