// The toolkit's platform without any display: windows are Cairo image surfaces that can be saved as PNG,
// time is a clock that only moves when told (or when something sleeps), and every input - presses with
// scripted drags, keys, wheel steps, menu choices, typed text - is injected by the caller.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gui/Platform.h"

namespace tolvane {

class OffscreenPlatform;

// One step of a scripted drag: where the pointer is and which buttons and modifiers are held.
struct PointerStep {
    Point where;
    int buttons = 0;
};

class OffscreenTextEdit;

class OffscreenWindow : public NativeWindow {
public:
    OffscreenWindow(OffscreenPlatform& platform, void* parent, int width, int height, WindowEventHandler& handler);
    ~OffscreenWindow() override;

    // ---- the platform side
    void* nativeHandle() const override;
    void invalidate(const Rect& area) override;
    std::unique_ptr<GraphicsContext> beginDrawing() override;
    void processEvents() override;
    bool dispatchOnePaint() override;
    int mouseButtons() override;
    Point mousePosition() override;
    void setCursor(CursorKind kind) override;
    int runPopupMenu(const std::vector<MenuItem>& items, Point where, bool rightButton) override;
    std::unique_ptr<TextEditSession> beginTextEdit(const TextEditRequest& request,
                                                   TextEditListener& listener) override;

    // ---- the test side
    // Paints the whole window (or an area) the way an expose would.
    void paint();
    void paint(const Rect& area);
    // A press at `where` with `buttons`. A drag loop then walks through `drag`: each read of the pointer
    // position takes the next step, and the buttons read after it are that step's. When the steps run out
    // the buttons read as released.
    void press(Point where, int buttons, std::vector<PointerStep> drag = {});
    // Sets the pointer and buttons for calls made directly on views.
    void setPointer(Point where, int buttons);
    int keyDown(const KeyCode& key);
    int keyUp(const KeyCode& key);
    void wheel(Point where, float distance, int buttons = 0);

    void setMenuChooser(std::function<int(const std::vector<MenuItem>&)> chooser) { menuChooser_ = std::move(chooser); }
    const std::vector<MenuItem>& lastMenu() const { return lastMenu_; }
    Point lastMenuPosition() const { return lastMenuPosition_; }
    bool lastMenuRightButton() const { return lastMenuRightButton_; }
    int menusRun() const { return menusRun_; }

    // Text editing: the field that is open (null when none), its request, and ways to end it.
    OffscreenTextEdit* activeEdit() const { return activeEdit_; }
    const TextEditRequest& lastEditRequest() const { return lastEditRequest_; }
    void typeText(const std::string& text);
    void finishEdit(bool returnPressed);

    std::uint32_t pixel(int x, int y) const;  // 0x00RRGGBB
    bool savePng(const std::string& path) const;
    cairo_surface_t* surface() const { return surface_; }
    int width() const { return width_; }
    int height() const { return height_; }
    void* parent() const { return parent_; }
    CursorKind cursor() const { return cursor_; }
    int drawPasses() const { return drawPasses_; }

private:
    friend class OffscreenTextEdit;

    OffscreenPlatform& platform_;
    void* parent_;
    int width_;
    int height_;
    WindowEventHandler& handler_;
    cairo_surface_t* surface_;
    bool destroyed_ = false;

    Point pointer_;
    int buttons_ = 0;
    std::deque<PointerStep> drag_;

    bool pendingPaint_ = false;
    Rect pendingArea_;
    CursorKind cursor_ = CursorKind::standard;
    int drawPasses_ = 0;

    std::deque<int> menuChoices_;
    std::function<int(const std::vector<MenuItem>&)> menuChooser_;
    std::vector<MenuItem> lastMenu_;
    Point lastMenuPosition_;
    bool lastMenuRightButton_ = false;
    int menusRun_ = 0;

    OffscreenTextEdit* activeEdit_ = nullptr;
    TextEditRequest lastEditRequest_;
};

class OffscreenTextEdit : public TextEditSession {
public:
    OffscreenTextEdit(OffscreenWindow& window, const TextEditRequest& request, TextEditListener& listener);
    ~OffscreenTextEdit() override;

    std::string text() const override { return text_; }
    bool returnPressed() const override { return returnPressed_; }

private:
    friend class OffscreenWindow;

    OffscreenWindow& window_;
    TextEditListener& listener_;
    std::string text_;
    bool returnPressed_ = false;
};

class OffscreenPlatform : public Platform {
public:
    OffscreenPlatform();
    ~OffscreenPlatform() override;

    std::unique_ptr<NativeWindow> createWindow(void* parent, int width, int height,
                                               WindowEventHandler& handler) override;
    std::unique_ptr<PlatformImage> createImage(const BmpImage& pixels) override;
    std::uint32_t tickCount() override { return clock_; }
    // Sleeping moves the clock on by the time slept and is recorded.
    void sleep(int milliseconds) override;
    int doubleClickTime() override { return doubleClickTime_; }

    void setTime(std::uint32_t milliseconds) { clock_ = milliseconds; }
    void advance(std::uint32_t milliseconds) { clock_ += milliseconds; }
    const std::vector<int>& sleeps() const { return sleeps_; }
    void clearSleeps() { sleeps_.clear(); }

    // The most recently created window that is still alive, or null.
    OffscreenWindow* window() const { return windows_.empty() ? nullptr : windows_.back(); }
    int windowsAlive() const { return static_cast<int>(windows_.size()); }

private:
    friend class OffscreenWindow;

    std::uint32_t clock_ = 1000;
    std::vector<int> sleeps_;
    int doubleClickTime_ = 400;
    std::vector<OffscreenWindow*> windows_;
    int created_ = 0;
};

}  // namespace tolvane
