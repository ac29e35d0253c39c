#include "tesmar/platform/ui/internal/InterfaceCoder.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/text/UIFont.h"

#include <charconv>

namespace tesmar {
namespace {

// Finite; parsed independently of the locale.
std::optional<double> number(const pugi::xml_attribute& attribute) {
    const std::string_view text = attribute.value();
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

double numberOr(const pugi::xml_node& node, const char* name, double fallback) {
    return number(node.attribute(name)).value_or(fallback);
}

Ref<UIColor> colorOf(const pugi::xml_node& node) {
    const double alpha = numberOr(node, "alpha", 1);
    if (const auto white = number(node.attribute("white")))
        return UIColor::colorWithWhite(*white, alpha);
    return UIColor::colorWithRed(numberOr(node, "red", 0), numberOr(node, "green", 0),
                                 numberOr(node, "blue", 0), alpha);
}

Ref<UIFont> fontOf(const pugi::xml_node& node) {
    const double size = numberOr(node, "size", 17);
    const std::string name = node.attribute("name").value();
    return name.empty() ? UIFont::systemFontOfSize(size) : UIFont::fontWithName(name, size);
}

} // namespace

void InterfaceFile::fail(const pugi::xml_node& at, const std::string& what) {
    if (problem.empty())
        problem = what + " (at byte " + std::to_string(at.offset_debug()) + ")";
}

bool InterfaceFile::spend(const DecodeBudget::Cost& cost, const pugi::xml_node& at) {
    if (budget.spend(cost))
        return true;
    fail(at, "too many objects and constraints, or objects nested too deep");
    return false;
}

Ref<UIImage> InterfaceFile::imageNamed(const std::string& name) {
    const auto [known, isNew] = images.emplace(name, nullptr);
    if (isNew)
        known->second = UIImage::imageNamedFrom(name, bundle ? *bundle : *NSBundle::mainBundle());
    return known->second;
}

Ref<NSObject> InterfaceFile::instantiate(const pugi::xml_node& element) {
    const std::string_view kind = element.name();
    if (kind == "color")
        return colorOf(element);
    if (kind == "font")
        return fontOf(element);
    if (kind == "image")
        return imageNamed(element.attribute("name").value());
    if (kind != "object") {
        fail(element, "unknown element <" + std::string(kind) + ">");
        return nullptr;
    }
    const std::string className = element.attribute("class").value();
    const Class* const type = classNamed(className);
    auto object = type ? type->alloc() : nullptr;
    if (!object) {
        fail(element, "unknown class \"" + className + "\"");
        return nullptr;
    }
    InterfaceCoder coder(*this, element);
    bool isInitialized = false;
    const auto cost = budget.measure([&] { isInitialized = object->initWithCoder(coder); });
    if (!spend(cost, element))
        return nullptr;
    if (!isInitialized) {
        fail(element, "the " + className + " could not be made");
        return nullptr;
    }
    if (const auto id = element.attribute("id"))
        if (!objectsById.emplace(id.value(), object).second)
            fail(element, "id \"" + std::string(id.value()) + "\" is used twice");
    objects.emplace_back(object, element);
    return object;
}

pugi::xml_node InterfaceCoder::child(std::string_view key) const {
    for (const auto& node : element_.children())
        if (node.attribute("key").value() == key)
            return node;
    return {};
}

// Plain values are attributes of the element itself.
std::optional<bool> InterfaceCoder::decodeBool(std::string_view key) {
    const auto text = decodeString(key);
    if (!text || (*text != "true" && *text != "false"))
        return std::nullopt;
    return *text == "true";
}

std::optional<long long> InterfaceCoder::decodeInteger(std::string_view key) {
    const auto value = decodeDouble(key);
    if (!value || std::abs(*value) > 9e15)
        return std::nullopt;
    return static_cast<long long>(*value);
}

std::optional<double> InterfaceCoder::decodeDouble(std::string_view key) {
    return number(element_.attribute(std::string(key).c_str()));
}

std::optional<std::string> InterfaceCoder::decodeString(std::string_view key) {
    const auto attribute = element_.attribute(std::string(key).c_str());
    if (!attribute)
        return std::nullopt;
    return attribute.value();
}

std::optional<CGRect> InterfaceCoder::decodeRect(std::string_view key) {
    const auto node = child(key);
    if (!node)
        return std::nullopt;
    return finiteRect({numberOr(node, "x", 0), numberOr(node, "y", 0), numberOr(node, "width", 0),
                       numberOr(node, "height", 0)});
}

Ref<NSObject> InterfaceCoder::decodeObject(std::string_view key) {
    const auto node = child(key);
    return node ? file_.instantiate(node) : nullptr;
}

std::vector<Ref<NSObject>> InterfaceCoder::decodeObjects(std::string_view key) {
    std::vector<Ref<NSObject>> objects;
    for (const auto& node : child(key).children("object"))
        if (auto object = file_.instantiate(node))
            objects.push_back(std::move(object));
    return objects;
}

} // namespace tesmar
