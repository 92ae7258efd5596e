#include "gui/RotaryKnob.h"

#include <cmath>

#include "gui/BitmapResource.h"
#include "gui/EditorBase.h"
#include "gui/EditorFrame.h"

namespace tolvane {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kTwoPi = 2.0 * kPi;
constexpr int kLinearPixelRange = 200;

std::int32_t roundHalfUp(double x) { return static_cast<std::int32_t>(x + 0.5); }

}  // namespace

RotaryKnob::RotaryKnob(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* background,
                       BitmapResource* handle, Point offset)
    : Control(bounds, listener, tag, background),
      backgroundOffset_(offset),
      startAngle_(static_cast<float>(5.0 * kPi / 4.0)),
      rangeAngle_(static_cast<float>(-3.0 * kPi / 2.0)),
      radius_(static_cast<float>(bounds.width()) / 2.0f) {
    setHandleBitmap(handle);
    computeAngles();
}

RotaryKnob::~RotaryKnob() {
    if (handle_) handle_->release();
}

void RotaryKnob::computeAngles() const {
    gapHalfAngle_ = static_cast<float>((kTwoPi - std::fabs(rangeAngle_)) / 2.0);
    slope_ = (max_ - min_) / rangeAngle_;
    angleOffset_ = min_ - slope_ * startAngle_;
}

void RotaryKnob::setHandleBitmap(BitmapResource* handle) {
    if (handle) handle->addRef();
    if (handle_) handle_->release();
    handle_ = handle;
    // The handle's centre runs inside the rim by half its width.
    inset_ = handle_ ? static_cast<std::int32_t>(handle_->getWidth() / 2.0 + 2.5) : 3;
}

void RotaryKnob::valueToPoint(Point& where) const {
    computeAngles();
    double angle = slope_ != 0.0f ? (value_ - angleOffset_) / slope_ : startAngle_;
    double reach = radius_ - inset_;
    where.h = roundHalfUp(radius_ + std::cos(angle) * reach);
    where.v = roundHalfUp(radius_ - std::sin(angle) * reach);
}

// The pointer's angle around the centre, measured from the start angle in the direction of the range.
// Inside the range the value is linear in that angle; in the gap between the two ends it goes to the
// nearer end, the gap being split at its middle.
float RotaryKnob::valueFromPoint(Point& where) const {
    computeAngles();
    double angle = std::atan2(radius_ - where.v, where.h - radius_);
    if (angle < 0.0) angle += kTwoPi;
    double span = std::fabs(rangeAngle_);
    double travelled = rangeAngle_ < 0.0f ? startAngle_ - angle : angle - startAngle_;
    travelled = std::fmod(travelled, kTwoPi);
    if (travelled < 0.0) travelled += kTwoPi;
    if (travelled <= span) return static_cast<float>(min_ + (max_ - min_) * (travelled / span));
    return travelled - span < gapHalfAngle_ ? max_ : min_;
}

void RotaryKnob::draw(Canvas& canvas) {
    if (background_) {
        if (transparent_)
            background_->drawTransparent(canvas, bounds_, backgroundOffset_);
        else
            background_->draw(canvas, bounds_, backgroundOffset_);
    }
    drawHandle(canvas);
    setDirty(false);
}

void RotaryKnob::drawHandle(Canvas& canvas) {
    Point tip;
    valueToPoint(tip);
    tip.h += bounds_.left;
    tip.v += bounds_.top;
    if (handle_) {
        int w = handle_->getWidth();
        int h = handle_->getHeight();
        Rect dest{tip.h - w / 2, tip.v - h / 2, tip.h - w / 2 + w, tip.v - h / 2 + h};
        handle_->drawTransparent(canvas, dest, Point{0, 0});
        return;
    }
    Point centre{bounds_.left + static_cast<std::int32_t>(radius_), bounds_.top + static_cast<std::int32_t>(radius_)};
    canvas.setLineWidth(1);
    canvas.setLineStyle(kLineSolid);
    canvas.setFrameColor(shadowColor_);
    canvas.moveTo(Point{centre.h + 1, centre.v + 1});
    canvas.lineTo(Point{tip.h + 1, tip.v + 1});
    canvas.setFrameColor(handleColor_);
    canvas.moveTo(centre);
    canvas.lineTo(tip);
}

void RotaryKnob::onMouseDown(Canvas& canvas, Point where) {
    if (!isMouseEnabled()) return;
    const int pressButtons = canvas.getMouseButtons();
    if (!(pressButtons & kLeftButton)) return;

    if (pressButtons == (kLeftButton | kControlKey)) {
        float before = value_;
        value_ = defaultValue_;
        if (value_ != before) reportChange(&canvas);
        return;
    }

    // Alt turns the host's choice around for this drag.
    const bool alt = (pressButtons & kAltKey) != 0;
    const bool linear = (EditorBase::getKnobMode() == kLinearKnobMode) != alt;
    const Point origin{bounds_.left, bounds_.top};
    auto relative = [&origin](Point p) { return Point{p.h - origin.h, p.v - origin.v}; };
    auto stepFor = [this](int buttons) {
        float pixels = (buttons & kShiftKey) ? kLinearPixelRange * zoomFactor_ : static_cast<float>(kLinearPixelRange);
        return (max_ - min_) / pixels;
    };

    // Linear: the value moves by one step per pixel of (right - down) from the anchor.
    float entry = value_;
    float step = stepFor(pressButtons);
    int stepButtons = pressButtons;
    float lastDelta = 0.0f;
    // Circular: the value follows the angle, but a jump of more than half the range between two polls
    // means the pointer crossed the gap, and the value stays at the end it came from.
    float reference = linear ? value_ : circularDragValue(relative(where), pressButtons);
    Point previous = where;

    beginEdit();
    if (frame_) frame_->setFocusView(this);
    dragStarted(canvas, pressButtons);

    trackMouse(canvas, where, [&](Point p, int buttons) {
        if (p == previous) return;
        previous = p;
        float before = value_;
        if (linear) {
            float delta = static_cast<float>((p.h - where.h) - (p.v - where.v));
            if (buttons != stepButtons) {
                // A new speed applies from here on: rebase so that the value does not jump.
                float newStep = stepFor(buttons);
                entry += (step - newStep) * lastDelta;
                step = newStep;
                stepButtons = buttons;
            }
            value_ = entry + delta * step;
            lastDelta = delta;
            clampValue();
        } else {
            float next = circularDragValue(relative(p), buttons);
            float half = (max_ - min_) / 2.0f;
            const bool gap = circularDragFollowsAngle();
            if (gap && next - reference < -half) {
                value_ = max_;
            } else if (gap && next - reference > half) {
                value_ = min_;
            } else {
                value_ = next;
                reference = next;
            }
        }
        if (value_ != before) reportChange(&canvas);
    });

    endEdit();
}

float RotaryKnob::circularDragValue(Point where, int) { return valueFromPoint(where); }

void RotaryKnob::dragStarted(Canvas&, int) {}

std::int32_t RotaryKnob::onKeyDown(const KeyCode& key) {
    float direction;
    switch (key.virt) {
        case kVirtualKeyLeft:
        case kVirtualKeyDown: direction = -1.0f; break;
        case kVirtualKeyUp:
        case kVirtualKeyRight: direction = 1.0f; break;
        default: return -1;
    }
    float step = wheelStep_ * ((key.modifier & kKeyModifierShift) ? 0.1f : 1.0f);
    float before = value_;
    value_ += direction * step;
    clampValue();
    if (value_ != before) reportChange(nullptr);
    return 1;
}

bool RotaryKnob::onWheel(Canvas* canvas, Point, float distance) {
    if (!isMouseEnabled()) return false;
    float step = wheelStep_ * ((currentButtons(canvas) & kShiftKey) ? 0.1f : 1.0f);
    float before = value_;
    value_ += distance * step;
    clampValue();
    if (value_ != before) reportChange(canvas);
    return true;
}

}  // namespace tolvane
