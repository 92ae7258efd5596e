#include "tools/render/EditorScreenshot.h"

#include <memory>

#include "editor/SynthEditor.h"
#include "host/SynthPlugin.h"
#include "platform/offscreen/OffscreenPlatform.h"

namespace tolvane {

vst2::AEffect* VST_CALL createSynthInProcess(vst2::HostCallback host) {
    if (!host || host(nullptr, vst2::audioMasterVersion, 0, 0, nullptr, 0.0f) == 0) return nullptr;
    auto* plugin = new SynthPlugin(host, nullptr);
    return plugin->effect();
}

bool drawEditorOffscreen(vst2::AEffect* effect, int page, EditorPicture& picture, const std::string& pngPath,
                         std::string& error) {
    auto* plugin = effect ? dynamic_cast<SynthPlugin*>(PluginBase::fromEffect(effect)) : nullptr;
    if (!plugin) {
        error = "the editor can only be drawn for the built-in synthesizer";
        return false;
    }
    if (page != 1 && page != 2) {
        error = "there are pages 1 and 2";
        return false;
    }
    OffscreenPlatform platform;
    Platform* previous = currentPlatform();
    installPlatform(&platform);
    struct Restore {
        Platform* previous;
        ~Restore() { installPlatform(previous); }
    } restore{previous};

    int parent = 0;  // the offscreen window needs no real parent
    if (effect->dispatcher(effect, vst2::effEditOpen, 0, 0, &parent, 0.0f) != 1 || !platform.window()) {
        error = "the editor did not open";
        return false;
    }
    plugin->synthEditor().selectPage(page - 1);
    plugin->synthEditor().idle();
    OffscreenWindow& window = *platform.window();
    window.paint();

    bool ok = true;
    picture.width = window.width();
    picture.height = window.height();
    picture.pixels.resize(static_cast<std::size_t>(picture.width) * picture.height);
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) picture.pixels[static_cast<std::size_t>(y) * picture.width + x] = window.pixel(x, y);
    if (!pngPath.empty() && !window.savePng(pngPath)) {
        error = "cannot write " + pngPath;
        ok = false;
    }
    effect->dispatcher(effect, vst2::effEditClose, 0, 0, nullptr, 0.0f);
    return ok;
}

}  // namespace tolvane
