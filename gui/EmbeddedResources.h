// Files compiled into the module (the editor's bitmaps), looked up by resource id.
#pragma once

#include <cstddef>

namespace tolvane {

struct EmbeddedResource {
    int id;
    const unsigned char* data;
    std::size_t size;
};

// The resource with this id, or null when the module carries none.
const EmbeddedResource* findEmbeddedResource(int id);

}  // namespace tolvane
