#include "platform/linux/LinuxPopupMenu.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <cairo-xlib.h>

#include <algorithm>
#include <cmath>
#include <ctime>

#include "platform/cairo/CairoGraphics.h"
#include "platform/linux/LinuxWindow.h"

namespace tolvane {
namespace {

constexpr Color kMenuText{229, 176, 52, 0};
constexpr Color kMenuBack{51, 34, 0, 0};
constexpr Color kMenuFrame{0, 0, 0, 0};
constexpr Color kMenuGreyText{140, 105, 26, 0};
constexpr int kItemHeight = 16;
constexpr int kSeparatorHeight = 7;
constexpr int kCheckRoom = 16;   // left of the text: check marks
constexpr int kArrowRoom = 16;   // right of the text: submenu arrows
constexpr int kBorder = 1;

FontSpec menuFont() {
    FontSpec font;
    font.face = "Arial";
    font.size = 11;
    font.weight = 400;
    return font;
}

void napMilliseconds(int ms) {
    timespec pause{0, static_cast<long>(ms) * 1000000L};
    nanosleep(&pause, nullptr);
}

}  // namespace

LinuxPopupMenu::LinuxPopupMenu(LinuxWindow& owner) : owner_(owner), display_(owner.display()) {}

LinuxPopupMenu::~LinuxPopupMenu() {
    closeLevelsFrom(0);
    XUngrabPointer(display_, CurrentTime);
    XUngrabKeyboard(display_, CurrentTime);
    XFlush(display_);
}

bool LinuxPopupMenu::selectable(const MenuItem& item) const {
    return !item.separator && !item.grayed && !item.disabled;
}

void LinuxPopupMenu::layout(Level& level) {
    // Measure on a scratch surface: columns are as wide as their widest entry.
    cairo_surface_t* scratch = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1);
    cairo_t* cr = cairo_create(scratch);
    const std::vector<MenuItem>& items = *level.items;
    level.slots.assign(items.size(), Slot{});
    std::vector<int> columnWidths(1, 0);
    std::vector<int> columnHeights(1, 0);
    int column = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const MenuItem& item = items[i];
        if (item.columnBreak && columnHeights[static_cast<std::size_t>(column)] > 0) {
            ++column;
            columnWidths.push_back(0);
            columnHeights.push_back(0);
        }
        int height = item.separator ? kSeparatorHeight : kItemHeight;
        int width = item.separator ? 0 : static_cast<int>(std::ceil(textWidth(cr, menuFont(), item.text.c_str())));
        auto c = static_cast<std::size_t>(column);
        level.slots[i].column = column;
        level.slots[i].area = Rect{0, kBorder + columnHeights[c], 0, kBorder + columnHeights[c] + height};
        columnHeights[c] += height;
        columnWidths[c] = std::max(columnWidths[c], width + kCheckRoom + kArrowRoom);
    }
    cairo_destroy(cr);
    cairo_surface_destroy(scratch);

    std::vector<int> columnLeft(columnWidths.size(), kBorder);
    level.columnEdges.clear();
    for (std::size_t c = 1; c < columnWidths.size(); ++c) {
        columnLeft[c] = columnLeft[c - 1] + columnWidths[c - 1] + 1;  // one pixel for the dividing line
        level.columnEdges.push_back(columnLeft[c] - 1);
    }
    for (Slot& slot : level.slots) {
        auto c = static_cast<std::size_t>(slot.column);
        slot.area.left = columnLeft[c];
        slot.area.right = columnLeft[c] + columnWidths[c];
    }
    int width = columnLeft.back() + columnWidths.back() + kBorder;
    int height = *std::max_element(columnHeights.begin(), columnHeights.end()) + 2 * kBorder;
    level.screen = Rect{0, 0, std::max(width, 40), std::max(height, kItemHeight)};
}

void LinuxPopupMenu::openLevel(const std::vector<MenuItem>& items, int rootX, int rootY, int alternateRootX,
                               int alternateBottom, const Point* keepClear) {
    auto level = std::make_unique<Level>();
    level->items = &items;
    layout(*level);
    const int width = level->screen.width();
    const int height = level->screen.height();
    const int screenW = DisplayWidth(display_, DefaultScreen(display_));
    const int screenH = DisplayHeight(display_, DefaultScreen(display_));
    // Keep it on the screen: flip to the other side, else push inwards.
    if (rootX + width > screenW) rootX = alternateRootX - width >= 0 ? alternateRootX - width : screenW - width;
    bool pushed = false;
    if (rootY + height > screenH) {
        pushed = !(alternateBottom >= 0 && alternateBottom - height >= 0);
        rootY = pushed ? std::max(0, screenH - height) : alternateBottom - height;
    }
    rootX = std::max(0, rootX);
    // Too tall for either side: pushed onto the screen, it moves sideways off the pointer where it can.
    if (pushed && keepClear && keepClear->v >= rootY && keepClear->v < rootY + height && keepClear->h >= rootX &&
        keepClear->h < rootX + width) {
        if (keepClear->h + 2 + width <= screenW) rootX = keepClear->h + 2;
        else if (keepClear->h - 1 - width >= 0) rootX = keepClear->h - 1 - width;
    }
    level->screen = Rect{rootX, rootY, rootX + width, rootY + height};

    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.save_under = True;
    attributes.event_mask = ExposureMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask | KeyPressMask;
    attributes.background_pixmap = None;
    Window root = DefaultRootWindow(display_);
    Visual* visual = DefaultVisual(display_, DefaultScreen(display_));
    level->window = XCreateWindow(display_, root, rootX, rootY, static_cast<unsigned>(width),
                                  static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, CopyFromParent,
                                  CWOverrideRedirect | CWSaveUnder | CWEventMask | CWBackPixmap, &attributes);
    level->surface = cairo_xlib_surface_create(display_, level->window, visual, width, height);
    XMapRaised(display_, level->window);
    levels_.push_back(std::move(level));
    XFlush(display_);
}

void LinuxPopupMenu::closeLevelsFrom(std::size_t index) {
    while (levels_.size() > index) {
        Level& level = *levels_.back();
        if (level.surface) {
            cairo_surface_finish(level.surface);
            cairo_surface_destroy(level.surface);
        }
        if (level.window) XDestroyWindow(display_, level.window);
        levels_.pop_back();
    }
    XFlush(display_);
}

void LinuxPopupMenu::draw(Level& level) {
    if (!level.surface) return;
    cairo_t* cr = cairo_create(level.surface);
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    const int width = level.screen.width();
    const int height = level.screen.height();
    setColor(cr, kMenuBack);
    cairo_paint(cr);
    setColor(cr, kMenuFrame);
    cairo_rectangle(cr, 0, 0, width, 1);
    cairo_rectangle(cr, 0, height - 1, width, 1);
    cairo_rectangle(cr, 0, 0, 1, height);
    cairo_rectangle(cr, width - 1, 0, 1, height);
    cairo_fill(cr);
    for (int edge : level.columnEdges) {
        setColor(cr, kMenuText);
        cairo_rectangle(cr, edge, 2, 1, height - 4);
        cairo_fill(cr);
    }

    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_set_font_options(cr, options);
    cairo_font_options_destroy(options);
    const FontSpec font = menuFont();
    selectFont(cr, font);
    cairo_font_extents_t extents;
    cairo_font_extents(cr, &extents);

    const std::vector<MenuItem>& items = *level.items;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const MenuItem& item = items[i];
        const Rect& area = level.slots[i].area;
        if (item.separator) {
            setColor(cr, kMenuGreyText);
            cairo_rectangle(cr, area.left + 2, area.top + kSeparatorHeight / 2, area.width() - 4, 1);
            cairo_fill(cr);
            continue;
        }
        const bool lit = static_cast<int>(i) == level.highlighted && selectable(item);
        const bool litSubmenu = static_cast<int>(i) == level.highlighted && item.hasSubmenu;
        Color ink = item.grayed ? kMenuGreyText : kMenuText;
        if (lit || litSubmenu) {
            setColor(cr, kMenuText);
            cairo_rectangle(cr, area.left, area.top, area.width(), area.height());
            cairo_fill(cr);
            ink = kMenuBack;
        }
        setColor(cr, ink);
        if (item.checked) {
            // A tick: short stroke down, long stroke up.
            double x = area.left + 4, y = area.top + 8;
            cairo_set_antialias(cr, CAIRO_ANTIALIAS_DEFAULT);
            cairo_set_line_width(cr, 1.6);
            cairo_move_to(cr, x, y);
            cairo_line_to(cr, x + 3, y + 3);
            cairo_line_to(cr, x + 9, y - 4);
            cairo_stroke(cr);
            cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
        }
        if (item.hasSubmenu) {
            double x = area.right - 10, y = area.top + area.height() / 2.0;
            cairo_move_to(cr, x, y - 4);
            cairo_line_to(cr, x + 4, y);
            cairo_line_to(cr, x, y + 4);
            cairo_close_path(cr);
            cairo_fill(cr);
        }
        double baseline = std::floor(area.top + (area.height() - (extents.ascent + extents.descent)) / 2.0 +
                                     extents.ascent + 0.5);
        cairo_move_to(cr, area.left + kCheckRoom, baseline);
        showText(cr, item.text.c_str());
    }
    cairo_destroy(cr);
    cairo_surface_flush(level.surface);
    XFlush(display_);
}

void LinuxPopupMenu::hit(int rootX, int rootY, int& level, int& entry) const {
    level = -1;
    entry = -1;
    for (std::size_t l = levels_.size(); l-- > 0;) {
        const Level& candidate = *levels_[l];
        const Rect& s = candidate.screen;
        if (rootX < s.left || rootX >= s.right || rootY < s.top || rootY >= s.bottom) continue;
        level = static_cast<int>(l);
        Point local{rootX - s.left, rootY - s.top};
        for (std::size_t i = 0; i < candidate.slots.size(); ++i) {
            const Rect& a = candidate.slots[i].area;
            if (local.h >= a.left && local.h < a.right && local.v >= a.top && local.v < a.bottom) {
                entry = static_cast<int>(i);
                break;
            }
        }
        return;
    }
}

void LinuxPopupMenu::highlight(std::size_t levelIndex, int entry) {
    Level& level = *levels_[levelIndex];
    if (level.highlighted == entry) return;
    level.highlighted = entry;
    // A deeper level belongs to the previous highlight.
    closeLevelsFrom(levelIndex + 1);
    if (entry >= 0) {
        const MenuItem& item = (*level.items)[static_cast<std::size_t>(entry)];
        if (item.hasSubmenu && !item.submenu.empty()) {
            const Rect& a = level.slots[static_cast<std::size_t>(entry)].area;
            openLevel(item.submenu, level.screen.left + a.right, level.screen.top + a.top - kBorder,
                      level.screen.left + a.left, -1, nullptr);
        }
    }
    draw(level);
}

void LinuxPopupMenu::moveHighlight(int direction) {
    Level& level = *levels_.back();
    const auto count = static_cast<int>(level.items->size());
    int entry = level.highlighted;
    for (int step = 0; step < count; ++step) {
        entry = entry < 0 ? (direction > 0 ? 0 : count - 1) : (entry + direction + count) % count;
        const MenuItem& item = (*level.items)[static_cast<std::size_t>(entry)];
        if (selectable(item) || item.hasSubmenu) {
            level.highlighted = entry;
            closeLevelsFrom(levels_.size());
            draw(level);
            return;
        }
    }
}

// Another client (often the host, still handling the click) may hold a grab for a moment: try for a while.
bool LinuxPopupMenu::grab() {
    Window window = levels_.front()->window;
    bool pointer = false, keyboard = false;
    for (int attempt = 0; attempt < 50 && !(pointer && keyboard); ++attempt) {
        if (!pointer)
            pointer = XGrabPointer(display_, window, True, ButtonPressMask | ButtonReleaseMask | PointerMotionMask,
                                   GrabModeAsync, GrabModeAsync, None, None, CurrentTime) == GrabSuccess;
        if (!keyboard)
            keyboard = XGrabKeyboard(display_, window, True, GrabModeAsync, GrabModeAsync, CurrentTime) == GrabSuccess;
        if (!(pointer && keyboard)) napMilliseconds(10);
    }
    return pointer;
}

// A menu that does not fit below its corner opens above both the corner and the pointer (which lies on the
// control that opened it); one that fits neither way is pushed onto the screen beside the pointer, so that
// it appears under the pointer only when it fits nowhere else. The release of the click that opened the
// menu never chooses: an entry is chosen by a press and release on it, or by a release after the pointer
// came into the menu from outside (a press held and dragged onto an entry).
int LinuxPopupMenu::run(const std::vector<MenuItem>& items, Point where, bool) {
    Window child = 0;
    int rootX = 0, rootY = 0;
    XTranslateCoordinates(display_, owner_.window(), DefaultRootWindow(display_), where.h, where.v, &rootX, &rootY,
                          &child);
    Window root = 0;
    int pointerX = rootX, pointerY = rootY, x = 0, y = 0;
    unsigned int mask = 0;
    XQueryPointer(display_, owner_.window(), &root, &child, &pointerX, &pointerY, &x, &y, &mask);
    const Point pointer{pointerX, pointerY};
    openLevel(items, rootX, rootY, rootX, std::min(rootY, pointerY) - 1, &pointer);
    grab();

    int level = -1, entry = -1;
    hit(pointerX, pointerY, level, entry);
    bool pointerWasOutside = level < 0;
    bool armed = false;  // a release may choose
    // The release of the press that opened the menu must not dismiss it.
    bool pressedSinceOpening = false;
    while (!done_) {
        XEvent event;
        XNextEvent(display_, &event);
        level = -1;
        entry = -1;
        Level* own = nullptr;
        for (auto& l : levels_)
            if (l->window == event.xany.window) own = l.get();
        switch (event.type) {
            case Expose:
                if (own) {
                    if (event.xexpose.count == 0) draw(*own);
                } else {
                    owner_.handleForeignEvent(event);
                }
                break;
            case MotionNotify:
                hit(event.xmotion.x_root, event.xmotion.y_root, level, entry);
                if (level >= 0) highlight(static_cast<std::size_t>(level), entry);
                if (level < 0) pointerWasOutside = true;
                else if (pointerWasOutside) armed = true;
                break;
            case ButtonPress:
                if (event.xbutton.button == Button4 || event.xbutton.button == Button5) break;
                hit(event.xbutton.x_root, event.xbutton.y_root, level, entry);
                if (level < 0) done_ = true;  // a press outside closes the menu
                pressedSinceOpening = true;
                armed = true;
                break;
            case ButtonRelease:
                if (event.xbutton.button == Button4 || event.xbutton.button == Button5) break;
                hit(event.xbutton.x_root, event.xbutton.y_root, level, entry);
                if (level >= 0 && entry >= 0 && armed) {
                    const MenuItem& item = (*levels_[static_cast<std::size_t>(level)]->items)[static_cast<std::size_t>(entry)];
                    if (selectable(item) && !item.hasSubmenu) {
                        result_ = item.id;
                        done_ = true;
                    }
                } else if (level < 0 && pressedSinceOpening) {
                    done_ = true;
                }
                break;
            case KeyPress: {
                KeySym symbol = XLookupKeysym(&event.xkey, 0);
                Level& deepest = *levels_.back();
                switch (symbol) {
                    case XK_Escape: done_ = true; break;
                    case XK_Up: moveHighlight(-1); break;
                    case XK_Down: moveHighlight(1); break;
                    case XK_Left:
                        if (levels_.size() > 1) {
                            closeLevelsFrom(levels_.size() - 1);
                            draw(*levels_.back());
                        }
                        break;
                    case XK_Right:
                    case XK_Return:
                    case XK_KP_Enter:
                    case XK_space:
                        if (deepest.highlighted >= 0) {
                            const MenuItem& item = (*deepest.items)[static_cast<std::size_t>(deepest.highlighted)];
                            if (item.hasSubmenu && !item.submenu.empty()) {
                                int lit = deepest.highlighted;
                                deepest.highlighted = -1;
                                highlight(levels_.size() - 1, lit);
                                moveHighlight(1);
                            } else if (symbol != XK_Right && selectable(item)) {
                                result_ = item.id;
                                done_ = true;
                            }
                        }
                        break;
                    default: break;
                }
                break;
            }
            default:
                if (!own) owner_.handleForeignEvent(event);
                break;
        }
    }
    closeLevelsFrom(0);
    return result_;
}

}  // namespace tolvane
