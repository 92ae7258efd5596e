// The base of everything the frame shows: bounds, dirty state, mouse handling and reference counting.
#pragma once

#include <cstdint>

#include "gui/Geometry.h"
#include "gui/KeyCode.h"
#include "gui/ReferenceCounted.h"

namespace tolvane {

class Canvas;
class EditorBase;
class EditorFrame;

class View : public ReferenceCounted {
public:
    explicit View(const Rect& bounds);

    virtual void draw(Canvas& canvas);
    virtual void drawRect(Canvas& canvas, const Rect& area);
    virtual bool intersectsUpdate(const Rect& area) const;
    virtual void onMouseDown(Canvas& canvas, Point where);
    virtual void redrawIfDirty(Canvas& canvas);
    virtual void notify(View* sender, const char* message);
    virtual std::int32_t onKeyDown(const KeyCode& key);
    virtual std::int32_t onKeyUp(const KeyCode& key);
    virtual bool onFilesDropped(const char* const* items, std::int32_t count, std::int32_t kind, Point where);
    virtual bool onWheel(Canvas* canvas, Point where, float distance);
    virtual void loseFocus(Canvas* canvas);
    virtual void takeFocus(Canvas* canvas);
    virtual bool isDirty() const;
    virtual void setDirty(bool dirty = true);
    virtual void setMouseEnabled(bool enabled);
    virtual bool isMouseEnabled() const;
    virtual bool hitTest(Point where) const;
    virtual void setBounds(const Rect& bounds);
    virtual void setFrame(EditorFrame* frame);
    virtual void setParentView(View* parent);
    virtual bool onRemoved(View* parent);
    virtual bool onAdded(View* parent);
    virtual void release();
    virtual void addRef();
    virtual std::int32_t getRefCount() const;

    const Rect& getBounds() const { return bounds_; }
    EditorFrame* getFrame() const { return frame_; }

protected:
    ~View() override;

    Rect bounds_;
    Rect mouseArea_;
    EditorFrame* frame_ = nullptr;
    View* parentView_ = nullptr;
    bool dirty_ = false;
    bool mouseEnabled_ = true;
    bool transparent_ = false;
};

}  // namespace tolvane
