// tolvane2-lv2-bundle FOLDER: writes the bundle's descriptions (manifest.ttl, tolvane2.ttl,
// tolvane2-ui.ttl, presets.ttl) into FOLDER. The build runs it; the binary is linked into the same folder.
#include <cstdio>
#include <string>

#include "lv2/BundleText.h"

namespace {

bool writeFile(const std::string& path, const std::string& text) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) {
        std::fprintf(stderr, "tolvane2-lv2-bundle: cannot write %s\n", path.c_str());
        return false;
    }
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) std::fprintf(stderr, "tolvane2-lv2-bundle: writing %s failed\n", path.c_str());
    return written && closed;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: tolvane2-lv2-bundle FOLDER\n");
        return 2;
    }
    const std::string folder = argv[1];
    using namespace tolvane::lv2;
    const bool ok = writeFile(folder + "/manifest.ttl", manifestText()) &&
                    writeFile(folder + "/tolvane2.ttl", pluginText()) &&
                    writeFile(folder + "/tolvane2-ui.ttl", uiText()) &&
                    writeFile(folder + "/presets.ttl", presetsText());
    return ok ? 0 : 1;
}
