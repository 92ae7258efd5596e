// The root view: owns the native child window, the child views, the modal and focus views, and turns the
// window's paints, presses, keys and wheel steps into calls on the views.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "gui/Canvas.h"
#include "gui/Platform.h"
#include "gui/View.h"

namespace tolvane {

class BitmapResource;
class Canvas;

class EditorFrame : public View, private WindowEventHandler {
public:
    // Creates the native window as a child of parentWindow when a platform is installed.
    EditorFrame(const Rect& size, void* parentWindow, EditorBase* editor);

    void draw(Canvas& canvas) override;
    void drawRect(Canvas& canvas, const Rect& area) override;
    void onMouseDown(Canvas& canvas, Point where) override;
    void redrawIfDirty(Canvas& canvas) override;
    std::int32_t onKeyDown(const KeyCode& key) override;
    std::int32_t onKeyUp(const KeyCode& key) override;
    bool onFilesDropped(const char* const* items, std::int32_t count, std::int32_t kind, Point where) override;
    bool onWheel(Canvas* canvas, Point where, float distance) override;

    // Takes over the caller's reference; false when the view is absent or already a child.
    virtual bool addView(View* view);
    virtual bool removeView(View* view, bool releaseView = true);
    virtual bool removeAllViews(bool releaseViews = true);
    virtual bool containsView(View* view) const;
    virtual std::int32_t getViewCount() const;
    virtual View* getViewAt(std::int32_t index) const;

    void setBackground(BitmapResource* background);
    BitmapResource* getBackground() const { return background_; }
    // Refused while another modal view is set; null clears.
    bool setModalView(View* view);
    View* getModalView() const { return modalView_; }
    // The previous focus view is told that it lost the focus.
    void setFocusView(View* view);
    View* getFocusView() const { return focusView_; }
    // The last child whose bounds contain the pointer.
    View* viewUnderMouse();
    void getMousePosition(Point& where);
    int getMouseButtons();
    void setCursor(CursorKind kind);
    // Draws the child at once, or the whole frame when the view is not a child.
    void redrawView(View* view);
    // Redraws what is dirty, once the window has been painted for the first time.
    void idle();
    // Handles the window's pending events (painting, presses, keys, wheel).
    void pumpEvents();
    // Paints at most one pending update of the window.
    void paintOnePending();
    void beginEdit(std::int32_t tag);
    void endEdit(std::int32_t tag);
    // The platform's tick count while an editor is attached, else 0.
    std::uint32_t ticks() const;

    EditorBase* getEditorBase() const { return editor_; }
    void* getParentWindow() const { return parentWindow_; }
    NativeWindow* getNativeWindow() const { return window_.get(); }
    bool isOpen() const { return open_; }
    // Runs action with a canvas that draws straight into the window (nothing is drawn without one).
    template <typename Action>
    void withCanvas(Action action);
    bool isFirstDrawPending() const { return firstDrawPending_; }

protected:
    ~EditorFrame() override;

private:
    void windowPaint(GraphicsContext& context, const Rect& area) override;
    void windowMouseDown(Point where) override;
    int windowKeyDown(const KeyCode& key) override;
    int windowKeyUp(const KeyCode& key) override;
    void windowWheel(Point where, float distance) override;
    void windowFilesDropped(const std::vector<std::string>& items, int kind, Point where) override;
    void windowDestroyed() override;

    View* lastChildAt(Point where, bool mouseEnabledOnly) const;

    EditorBase* editor_;
    void* parentWindow_;
    BitmapResource* background_ = nullptr;
    std::vector<View*> children_;
    View* modalView_ = nullptr;
    View* focusView_ = nullptr;
    bool firstDrawPending_ = true;
    bool open_ = true;
    std::unique_ptr<NativeWindow> window_;
};

template <typename Action>
void EditorFrame::withCanvas(Action action) {
    std::unique_ptr<GraphicsContext> context = window_ && open_ ? window_->beginDrawing() : nullptr;
    Canvas canvas(this, context.get());
    action(canvas);
}

}  // namespace tolvane
