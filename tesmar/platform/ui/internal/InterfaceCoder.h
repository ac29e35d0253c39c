// The coder through which an object reads its element of an interface file.
#pragma once

#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/internal/DecodeBudget.h"

#include <map>
#include <pugixml.hpp>
#include <string>
#include <vector>

namespace tesmar {

class UIImage;

// State shared by the coders of one file.
struct InterfaceFile {
    Ref<NSBundle> bundle;
    std::map<std::string, Ref<NSObject>, std::less<>> objectsById;
    // With their elements, in the order of completion: inner objects first.
    std::vector<std::pair<Ref<NSObject>, pugi::xml_node>> objects;
    std::map<std::string, Ref<UIImage>, std::less<>> images; // by name; null if missing
    DecodeBudget budget{kInterfaceLimits};
    std::string problem; // the first one; empty if there is none

    // Sets the problem, with the place, unless there is one already.
    void fail(const pugi::xml_node& at, const std::string& what);
    // Spends the cost of an object or of constraints. Returns false and calls fail() if it is too
    // much.
    bool spend(const DecodeBudget::Cost& cost, const pugi::xml_node& at);
    // The object of an <object>, <color>, <font> or <image> element. Null for a missing image or
    // font, and for an invalid element, which also sets `problem`.
    Ref<NSObject> instantiate(const pugi::xml_node& element);
    // Decoded once, however many objects show it.
    Ref<UIImage> imageNamed(const std::string& name);
};

class InterfaceCoder : public NSCoder {
  public:
    InterfaceCoder(InterfaceFile& file, pugi::xml_node element) : file_(file), element_(element) {}

    std::optional<bool> decodeBool(std::string_view key) override;
    std::optional<long long> decodeInteger(std::string_view key) override;
    std::optional<double> decodeDouble(std::string_view key) override;
    std::optional<std::string> decodeString(std::string_view key) override;
    std::optional<CGRect> decodeRect(std::string_view key) override;
    Ref<NSObject> decodeObject(std::string_view key) override;
    std::vector<Ref<NSObject>> decodeObjects(std::string_view key) override;
    bool failed() const override { return !file_.problem.empty(); }

  private:
    pugi::xml_node child(std::string_view key) const;

    InterfaceFile& file_;
    pugi::xml_node element_;
};

} // namespace tesmar
