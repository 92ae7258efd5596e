#include "gui/Platform.h"

namespace tolvane {
namespace {
Platform* installed = nullptr;
}

void installPlatform(Platform* platform) { installed = platform; }

Platform* currentPlatform() { return installed; }

}  // namespace tolvane
