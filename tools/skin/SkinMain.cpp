// tolvane2-skin: draws the editor's 24 bitmaps and writes them as 24-bit BMP files.
//
//   tolvane2-skin --out DIR [--preview DIR]
//
// Each bitmap becomes DIR/<id>-<name>.bmp. Files in DIR that carry one of the skin's ids under another
// name are removed, so that the build never embeds two files for one id. Nothing is written when a text
// of a background would lie under a control. With --preview, PNG pictures of both pages with all
// controls in place are written as well.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>

#include "gui/BmpImage.h"
#include "tools/skin/SkinBitmaps.h"
#include "tools/skin/SkinPreview.h"

namespace fs = std::filesystem;
using namespace tolvane;
using namespace tolvane::skin;

namespace {

int usage() {
    std::fprintf(stderr, "usage: tolvane2-skin --out DIR [--preview DIR]\n");
    return 2;
}

bool writeFile(const fs::path& path, const std::vector<unsigned char>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(out);
}

void removeStaleFiles(const fs::path& directory, const std::map<int, std::string>& current) {
    const std::regex pattern("([0-9]+)-.*\\.bmp");
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        std::string name = entry.path().filename().string();
        std::smatch match;
        if (!std::regex_match(name, match, pattern)) continue;
        auto it = current.find(std::stoi(match[1].str()));
        if (it != current.end() && it->second != name) {
            std::printf("removing %s\n", entry.path().string().c_str());
            fs::remove(entry.path());
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::string outDir;
    std::string previewDir;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--out" && i + 1 < argc)
            outDir = argv[++i];
        else if (arg == "--preview" && i + 1 < argc)
            previewDir = argv[++i];
        else
            return usage();
    }
    if (outDir.empty()) return usage();
    fs::create_directories(outDir);

    std::map<int, BmpImage> images;
    for (const SkinBitmap& bitmap : skinBitmaps()) {
        BmpImage image = bitmap.draw();
        if (image.width != bitmap.width || image.height != bitmap.height) {
            std::fprintf(stderr, "tolvane2-skin: bitmap %d drawn at %d x %d, expected %d x %d\n", bitmap.id,
                         image.width, image.height, bitmap.width, bitmap.height);
            return 1;
        }
        images[bitmap.id] = std::move(image);
    }
    std::vector<std::string> collisions = labelCollisions();
    for (const std::string& collision : collisions) std::fprintf(stderr, "tolvane2-skin: %s\n", collision.c_str());
    if (!collisions.empty()) return 1;

    std::map<int, std::string> fileNames;
    for (const SkinBitmap& bitmap : skinBitmaps()) {
        std::string name = std::to_string(bitmap.id) + "-" + bitmap.name + ".bmp";
        if (!writeFile(fs::path(outDir) / name, encodeBmp24(images[bitmap.id]))) {
            std::fprintf(stderr, "tolvane2-skin: cannot write %s\n", name.c_str());
            return 1;
        }
        fileNames[bitmap.id] = name;
    }
    removeStaleFiles(outDir, fileNames);
    std::printf("wrote %zu bitmaps to %s\n", images.size(), outDir.c_str());

    if (!previewDir.empty()) {
        fs::create_directories(previewDir);
        if (!writePreviews(images, previewDir)) return 1;
        std::printf("wrote previews to %s\n", previewDir.c_str());
    }
    return 0;
}
