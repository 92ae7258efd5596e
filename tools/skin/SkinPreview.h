// Composed pictures of both editor pages with every control drawn at its place, for judging the skin
// before the editor exists.
#pragma once

#include <map>
#include <string>

#include "gui/BmpImage.h"

namespace tolvane::skin {

// Writes preview-page1.png, preview-page2.png (and twice-size copies), preview-about.png and
// preview-bitmaps.png (the small bitmaps enlarged) into the directory. The map holds every bitmap by
// resource id.
bool writePreviews(const std::map<int, BmpImage>& bitmaps, const std::string& directory);

}  // namespace tolvane::skin
