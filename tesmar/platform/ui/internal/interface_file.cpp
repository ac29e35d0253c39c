#include "tesmar/platform/ui/internal/interface_file.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/layout/NSLayoutConstraint.h"
#include "tesmar/platform/layout/internal/visual_format.h"
#include "tesmar/platform/ui/UIView.h"
#include "tesmar/platform/ui/internal/InterfaceCoder.h"
#include "tesmar/platform/ui/internal/platform_classes.h"

#include <array>
#include <map>

namespace tesmar {
namespace {

const std::map<std::string_view, NSLayoutFormatOptions>& optionNames() {
    static const auto& names = *new std::map<std::string_view, NSLayoutFormatOptions>{
        {"", NSLayoutFormatNone},
        {"alignAllTop", NSLayoutFormatAlignAllTop},
        {"alignAllBottom", NSLayoutFormatAlignAllBottom},
        {"alignAllLeft", NSLayoutFormatAlignAllLeft},
        {"alignAllRight", NSLayoutFormatAlignAllRight},
        {"alignAllCenterX", NSLayoutFormatAlignAllCenterX},
        {"alignAllCenterY", NSLayoutFormatAlignAllCenterY}};
    return names;
}

// <outlet property="nextButton" destination="next"/> calls setNextButton: with the object whose id
// is "next".
void connectOutlets(InterfaceFile& file, const Ref<NSObject>& object, const pugi::xml_node& node) {
    for (const auto& outlet : node.children("outlet")) {
        std::string property = outlet.attribute("property").value();
        const auto target = file.objectsById.find(outlet.attribute("destination").value());
        if (property.empty() || target == file.objectsById.end()) {
            file.fail(outlet, "an outlet leads nowhere");
            continue;
        }
        property[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(property[0])));
        const std::array<Value, 1> arguments{target->second};
        if (!performSelectorIfItFits(*object, Selector("set" + property + ":"), arguments))
            file.fail(outlet, std::string(object->isa().name()) + " has no outlet \"" +
                                  outlet.attribute("property").value() + "\" for a " +
                                  std::string(target->second->isa().name()));
    }
}

NSLayoutConstraint::Views viewsById(const InterfaceFile& file) {
    NSLayoutConstraint::Views views;
    for (const auto& [id, object] : file.objectsById)
        if (const auto view = as<UIView>(object))
            views.emplace(id, view);
    return views;
}

// <constraints format="H:|[prev(44)][name]" options="alignAllCenterY"/>, where the names of views
// are ids of the file.
void addConstraints(InterfaceFile& file, const NSLayoutConstraint::Views& views,
                    const Ref<NSObject>& object, const pugi::xml_node& node) {
    const auto view = as<UIView>(object);
    for (const auto& constraints : node.children("constraints")) {
        const auto option = optionNames().find(constraints.attribute("options").value());
        if (!view || option == optionNames().end()) {
            file.fail(constraints, "constraints with unknown options, or on an object that is "
                                   "not a view");
            continue;
        }
        const std::string format = constraints.attribute("format").value();
        const auto made = constraintsFromVisualFormat(format, option->second, {}, views);
        if (const auto* error = std::get_if<VisualFormatError>(&made))
            file.fail(constraints, describe(*error, format));
        else if (const auto& all = std::get<std::vector<Ref<NSLayoutConstraint>>>(made);
                 file.spend({.values = all.size()}, constraints))
            view->addConstraints(all);
    }
}

} // namespace

std::optional<std::vector<Ref<NSObject>>>
instantiateInterface(std::string_view text, const Ref<NSBundle>& bundle, std::string& problem) {
    registerPlatformClasses();
    InterfaceFile file;
    if (!file.budget.spendBytes(text.size())) {
        problem = "larger than " + std::to_string(kInterfaceLimits.bytes) + " bytes";
        return std::nullopt;
    }
    pugi::xml_document document;
    const auto parsed = document.load_buffer(text.data(), text.size());
    if (!parsed) {
        problem =
            std::string(parsed.description()) + " (at byte " + std::to_string(parsed.offset) + ")";
        return std::nullopt;
    }
    file.bundle = bundle;
    std::vector<Ref<NSObject>> topLevel;
    for (const auto& node : document.child("interface").children("object"))
        if (auto object = file.instantiate(node))
            topLevel.push_back(std::move(object));
    const auto views = viewsById(file);
    const auto objects = file.objects;
    for (const auto& [object, node] : objects) {
        if (!file.problem.empty())
            break;
        connectOutlets(file, object, node);
        addConstraints(file, views, object, node);
    }
    problem = file.problem;
    if (!problem.empty())
        return std::nullopt;
    for (const auto& [object, node] : objects)
        object->awakeFromNib();
    return topLevel;
}

} // namespace tesmar
