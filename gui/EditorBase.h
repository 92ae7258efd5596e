// The base of the host-facing editor object: window rectangle, open and close, idle with pending updates,
// keys, wheel, knob mode, and the idle pump that keeps things moving while a control tracks the mouse.
#pragma once

#include <cstdint>

#include "gui/Geometry.h"
#include "gui/KeyCode.h"

namespace tolvane {

class EditorFrame;
class EditorHost;

// The editor's size as the host asks for it (same field order and sizes as the host's record).
struct EditorRect {
    std::int16_t top = 0;
    std::int16_t left = 0;
    std::int16_t bottom = 0;
    std::int16_t right = 0;
};

enum KnobModes { kCircularKnobMode = 0, kRelativeCircularKnobMode = 1, kLinearKnobMode = 2 };

class EditorBase {
public:
    explicit EditorBase(EditorHost* host);
    EditorBase(const EditorBase&) = delete;
    EditorBase& operator=(const EditorBase&) = delete;

    virtual ~EditorBase();
    virtual std::int32_t getRect(EditorRect** rect);
    virtual std::int32_t open(void* parentWindow);
    virtual void close();
    virtual void idle();
    virtual void update();
    virtual void postUpdate();
    virtual std::int32_t onKeyDown(const KeyCode& key);
    virtual std::int32_t onKeyUp(const KeyCode& key);
    virtual std::int32_t setKnobMode(std::int32_t mode);
    virtual bool onWheel(float distance);
    virtual void setParameter(std::int32_t index, float value);
    virtual void draw(const Rect* area);
    virtual void idlePump();

    // Process-wide: 2 drags knobs linearly, anything else circularly.
    static std::int32_t getKnobMode();

    EditorHost* getHost() const { return host_; }
    EditorFrame* getFrame() const { return frame_; }
    void* getParentWindow() const { return parentWindow_; }
    bool isUpdatePending() const { return updatePending_; }

protected:
    // Releases the frame (and with it the native window and every view) if there is one.
    void destroyFrame();

    EditorHost* host_;
    void* parentWindow_ = nullptr;
    EditorFrame* frame_ = nullptr;
    bool updatePending_ = false;
    bool insideIdle_ = false;
    std::uint32_t nextIdleTime_ = 0;
    EditorRect rect_;
};

}  // namespace tolvane
