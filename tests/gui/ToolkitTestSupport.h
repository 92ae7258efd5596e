// Shared pieces of the toolkit tests: the offscreen platform installed for the test's lifetime, a fake
// plug-in that counts what the editor asks of it, an editor that opens a frame, and bitmaps made in memory.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "gui/BitmapResource.h"
#include "gui/Control.h"
#include "gui/EditorBase.h"
#include "gui/EditorFrame.h"
#include "gui/EditorHost.h"
#include "platform/offscreen/OffscreenPlatform.h"

namespace tolvane {
namespace testing {

struct FakeHost : EditorHost {
    std::vector<std::int32_t> begun;
    std::vector<std::int32_t> ended;
    int idles = 0;
    std::function<void()> onIdle;

    void registerEditor(EditorBase*) override {}
    void beginEdit(std::int32_t index) override { begun.push_back(index); }
    void endEdit(std::int32_t index) override { ended.push_back(index); }
    void hostIdle() override {
        ++idles;
        if (onIdle) onIdle();
    }
};

class TestEditor : public EditorBase {
public:
    explicit TestEditor(EditorHost* host, int width = 200, int height = 150) : EditorBase(host) {
        rect_.right = static_cast<std::int16_t>(width);
        rect_.bottom = static_cast<std::int16_t>(height);
    }
    std::int32_t open(void* parent) override {
        EditorBase::open(parent);
        frame_ = new EditorFrame(Rect{0, 0, rect_.right, rect_.bottom}, parent, this);
        return 1;
    }
    void update() override { ++updates; }
    int updates = 0;
};

// Records every change its controls report, with the value at that moment.
struct RecordingListener : ControlListener {
    std::vector<float> values;
    std::function<void(Control*)> onChange;
    void valueChanged(Canvas*, Control* control) override {
        values.push_back(control->getValue());
        if (onChange) onChange(control);
    }
};

// A bitmap whose pixel (x, y) is colourAt(x, y), as 0x00RRGGBB.
inline BitmapResource* makeBitmap(int width, int height, const std::function<std::uint32_t(int, int)>& colourAt) {
    BmpImage image;
    image.width = width;
    image.height = height;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) image.pixels.push_back(colourAt(x, y) & 0xFFFFFFu);
    return new BitmapResource(image);
}

inline std::uint32_t rgb(int r, int g, int b) {
    return static_cast<std::uint32_t>(r) << 16 | static_cast<std::uint32_t>(g) << 8 | static_cast<std::uint32_t>(b);
}

// Installs the offscreen platform and opens a TestEditor with a frame on a dummy parent.
class ToolkitTest : public ::testing::Test {
protected:
    void SetUp() override {
        installPlatform(&platform);
        editor = new TestEditor(&host);
        editor->open(&parentToken);
        frame = editor->getFrame();
        window = platform.window();
        ASSERT_NE(window, nullptr);
    }
    void TearDown() override {
        editor->setKnobMode(kCircularKnobMode);
        delete editor;
        installPlatform(nullptr);
    }

    // Adds the view to the frame (the frame takes over the reference) and returns it.
    template <typename V>
    V* add(V* view) {
        frame->addView(view);
        return view;
    }

    OffscreenPlatform platform;
    FakeHost host;
    TestEditor* editor = nullptr;
    EditorFrame* frame = nullptr;
    OffscreenWindow* window = nullptr;
    int parentToken = 0;
};

}  // namespace testing
}  // namespace tolvane
