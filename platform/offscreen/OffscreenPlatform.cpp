#include "platform/offscreen/OffscreenPlatform.h"

#include <algorithm>

#include "platform/cairo/CairoGraphics.h"

namespace tolvane {

// ---- window

OffscreenWindow::OffscreenWindow(OffscreenPlatform& platform, void* parent, int width, int height,
                                 WindowEventHandler& handler)
    : platform_(platform),
      parent_(parent),
      width_(width),
      height_(height),
      handler_(handler),
      surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)) {
    platform_.windows_.push_back(this);
    ++platform_.created_;
    pendingPaint_ = true;
    pendingArea_ = Rect{0, 0, width, height};
}

OffscreenWindow::~OffscreenWindow() {
    auto& windows = platform_.windows_;
    windows.erase(std::remove(windows.begin(), windows.end(), this), windows.end());
    cairo_surface_destroy(surface_);
}

void* OffscreenWindow::nativeHandle() const { return surface_; }

void OffscreenWindow::invalidate(const Rect& area) {
    if (!pendingPaint_) {
        pendingArea_ = area;
    } else {
        pendingArea_ = Rect{std::min(pendingArea_.left, area.left), std::min(pendingArea_.top, area.top),
                            std::max(pendingArea_.right, area.right), std::max(pendingArea_.bottom, area.bottom)};
    }
    pendingPaint_ = true;
}

std::unique_ptr<GraphicsContext> OffscreenWindow::beginDrawing() {
    ++drawPasses_;
    return std::make_unique<CairoGraphics>(surface_, Rect{0, 0, width_, height_});
}

void OffscreenWindow::processEvents() { dispatchOnePaint(); }

bool OffscreenWindow::dispatchOnePaint() {
    if (!pendingPaint_ || destroyed_) return false;
    pendingPaint_ = false;
    paint(pendingArea_);
    return true;
}

int OffscreenWindow::mouseButtons() { return buttons_; }

// Each read of the position moves on to the next scripted step, whose buttons the following read of the
// buttons answers; past the last step the buttons are released where the pointer stands.
Point OffscreenWindow::mousePosition() {
    if (drag_.empty()) {
        buttons_ = 0;
    } else {
        pointer_ = drag_.front().where;
        buttons_ = drag_.front().buttons;
        drag_.pop_front();
    }
    return pointer_;
}

void OffscreenWindow::setCursor(CursorKind kind) { cursor_ = kind; }

int OffscreenWindow::runPopupMenu(const std::vector<MenuItem>& items, Point where, bool rightButton) {
    ++menusRun_;
    lastMenu_ = items;
    lastMenuPosition_ = where;
    lastMenuRightButton_ = rightButton;
    if (!menuChoices_.empty()) {
        int id = menuChoices_.front();
        menuChoices_.pop_front();
        return id;
    }
    return menuChooser_ ? menuChooser_(items) : -1;
}

std::unique_ptr<TextEditSession> OffscreenWindow::beginTextEdit(const TextEditRequest& request,
                                                                TextEditListener& listener) {
    if (activeEdit_) return nullptr;
    lastEditRequest_ = request;
    return std::make_unique<OffscreenTextEdit>(*this, request, listener);
}

void OffscreenWindow::paint() { paint(Rect{0, 0, width_, height_}); }

void OffscreenWindow::paint(const Rect& area) {
    if (destroyed_) return;
    CairoGraphics context(surface_, area);
    handler_.windowPaint(context, area);
}

void OffscreenWindow::press(Point where, int buttons, std::vector<PointerStep> drag) {
    pointer_ = where;
    buttons_ = buttons;
    drag_.assign(drag.begin(), drag.end());
    handler_.windowMouseDown(where);
    drag_.clear();
    buttons_ = 0;
}

void OffscreenWindow::setPointer(Point where, int buttons) {
    pointer_ = where;
    buttons_ = buttons;
    drag_.clear();
}

int OffscreenWindow::keyDown(const KeyCode& key) { return handler_.windowKeyDown(key); }

int OffscreenWindow::keyUp(const KeyCode& key) { return handler_.windowKeyUp(key); }

void OffscreenWindow::wheel(Point where, float distance, int buttons) {
    pointer_ = where;
    buttons_ = buttons;
    handler_.windowWheel(where, distance);
    buttons_ = 0;
}

void OffscreenWindow::typeText(const std::string& text) {
    if (activeEdit_) activeEdit_->text_ = text;
}

void OffscreenWindow::finishEdit(bool returnPressed) {
    if (!activeEdit_) return;
    activeEdit_->returnPressed_ = returnPressed;
    // The listener usually destroys the session from inside this call.
    activeEdit_->listener_.textEditEnded();
}

std::uint32_t OffscreenWindow::pixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return 0;
    cairo_surface_flush(surface_);
    const unsigned char* data = cairo_image_surface_get_data(surface_);
    int stride = cairo_image_surface_get_stride(surface_);
    return reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride)[x] & 0x00FFFFFFu;
}

bool OffscreenWindow::savePng(const std::string& path) const {
    return cairo_surface_write_to_png(surface_, path.c_str()) == CAIRO_STATUS_SUCCESS;
}

// ---- text edit

OffscreenTextEdit::OffscreenTextEdit(OffscreenWindow& window, const TextEditRequest& request,
                                     TextEditListener& listener)
    : window_(window), listener_(listener), text_(request.text) {
    window_.activeEdit_ = this;
}

OffscreenTextEdit::~OffscreenTextEdit() {
    if (window_.activeEdit_ == this) window_.activeEdit_ = nullptr;
}

// ---- platform

OffscreenPlatform::OffscreenPlatform() = default;

OffscreenPlatform::~OffscreenPlatform() = default;

std::unique_ptr<NativeWindow> OffscreenPlatform::createWindow(void* parent, int width, int height,
                                                              WindowEventHandler& handler) {
    if (width <= 0 || height <= 0) return nullptr;
    return std::make_unique<OffscreenWindow>(*this, parent, width, height, handler);
}

std::unique_ptr<PlatformImage> OffscreenPlatform::createImage(const BmpImage& pixels) {
    if (pixels.width <= 0 || pixels.height <= 0) return nullptr;
    return std::make_unique<CairoImage>(pixels);
}

void OffscreenPlatform::sleep(int milliseconds) {
    sleeps_.push_back(milliseconds);
    if (milliseconds > 0) clock_ += static_cast<std::uint32_t>(milliseconds);
}

}  // namespace tolvane
