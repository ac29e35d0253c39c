// ATK's interfaces of an element's object. Each is a GType with the function that fills it.
#pragma once

#include <atk/atk.h>

#include <utility>

namespace tesmar {

using ElementInterface = std::pair<GType, GInterfaceInitFunc>;

ElementInterface componentInterface(); // its place
ElementInterface windowInterface();
ElementInterface actionInterface();
ElementInterface valueInterface();     // of an adjustable element
ElementInterface selectionInterface(); // of a group of options
ElementInterface textInterface();      // of a text or a heading: its name, character by character

} // namespace tesmar
