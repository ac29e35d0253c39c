// A program outside the tree: it sees installed headers and what the library exports.
#include <tesmar/platform/foundation/NSBundle.h>

#include <cstdio>

int main() {
    const auto bundle = tesmar::NSBundle::bundle("com.example.consumer", {});
    const bool works = bundle->bundleIdentifier() == "com.example.consumer";
    std::puts(works ? "works" : "does not work");
    return works ? 0 : 1;
}
