// A program outside the tree: it sees installed headers and what the library exports.
#include <tesmar/tesmar.h>

#include <cstdio>

int main() {
    tesmar::NSBundle::setMainBundle(tesmar::TESMARHostBundle("com.example.consumer"));
    const auto panel = tesmar::make<tesmar::TESMARViewController>();
    const bool works = panel->CCStyleAttributes() != nullptr;
    std::puts(works ? "works with TESMAR " TESMAR_VERSION : "does not work");
    return works ? 0 : 1;
}
