// The plug-in with its editor open on the offscreen platform: presses and drags go to the window, host
// calls are recorded, and drawn pixels can be compared with the skin's bitmaps.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "editor/SynthEditor.h"
#include "editor/WidgetFrame.h"
#include "gui/BmpImage.h"
#include "gui/EmbeddedResources.h"
#include "platform/offscreen/OffscreenPlatform.h"
#include "support/PluginFixture.h"

namespace tolvane::testing {

// The skin's bitmap as the module carries it.
inline const BmpImage& skinBitmap(int id) {
    static std::map<int, BmpImage> decoded;
    auto found = decoded.find(id);
    if (found != decoded.end()) return found->second;
    BmpImage image;
    const EmbeddedResource* resource = findEmbeddedResource(id);
    if (resource) decodeBmp(resource->data, resource->size, image);
    return decoded[id] = image;
}

inline Point centreOf(const Rect& r) { return Point{(r.left + r.right) / 2, (r.top + r.bottom) / 2}; }

class EditorTest : public ::testing::Test {
protected:
    void SetUp() override {
        installPlatform(&platform);
        ASSERT_EQ(plugin.dispatch(vst2::effEditOpen, 0, 0, &parentToken), 1);
        window = platform.window();
        ASSERT_NE(window, nullptr);
        editor().idle();  // the first paint
        plugin.host.calls.clear();
    }
    void TearDown() override {
        if (plugin.effect) {  // a test may have closed the plug-in
            editor().setKnobMode(kCircularKnobMode);
            plugin.dispatch(vst2::effEditClose);
        }
        installPlatform(nullptr);
    }

    SynthEditor& editor() { return plugin.plugin->synthEditor(); }
    WidgetFrame& frame() { return *editor().widgetFrame(); }

    // A press (and drag) on the window, then the host's next idle.
    void press(Point where, int buttons = kLeftButton, std::vector<PointerStep> drag = {}) {
        window->press(where, buttons, std::move(drag));
        editor().idle();
    }
    void hostSets(int index, float value) {
        plugin.effect->setParameter(plugin.effect, index, value);
        editor().idle();
    }

    // The values the plug-in reported to the host as automation of an index, in order.
    std::vector<float> automated(int index) const {
        std::vector<float> values;
        for (const auto& call : plugin.host.calls)
            if (call.opcode == vst2::audioMasterAutomate && call.index == index) values.push_back(call.opt);
        return values;
    }
    float lastAutomated(int index) const {
        std::vector<float> values = automated(index);
        return values.empty() ? -1.0f : values.back();
    }

    // Whether the window at `where` shows the bitmap's block from `source` (the block's size is where's).
    ::testing::AssertionResult shows(int bitmap, const Rect& where, Point source) {
        const BmpImage& image = skinBitmap(bitmap);
        for (int y = 0; y < where.height(); ++y)
            for (int x = 0; x < where.width(); ++x) {
                std::uint32_t expected = image.at(source.h + x, source.v + y);
                std::uint32_t drawn = window->pixel(where.left + x, where.top + y);
                if (drawn != expected)
                    return ::testing::AssertionFailure()
                           << "pixel (" << where.left + x << ", " << where.top + y << ") is " << std::hex << drawn
                           << ", the bitmap's " << expected;
            }
        return ::testing::AssertionSuccess();
    }

    OffscreenPlatform platform;  // outlives the plug-in, whose editor may still hold a window
    PluginFixture plugin;
    OffscreenWindow* window = nullptr;
    int parentToken = 0;
};

}  // namespace tolvane::testing
