// What the toolkit needs of the operating system, behind small interfaces that the toolkit owns.
//
// A platform (X11 + Cairo, an offscreen Cairo surface, later Win32 GDI) implements these and is installed
// at run time with installPlatform(): the module's entry installs the native one, tests install the
// offscreen one. Nothing here names an OS type; native handles travel as void*.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "gui/Geometry.h"
#include "gui/KeyCode.h"

namespace tolvane {

struct BmpImage;

// A font as the canvas asks for it: face name, height in pixels (the character height), weight 400 or 700.
struct FontSpec {
    const char* face = "Arial";
    int size = 12;
    int weight = 400;
    bool italic = false;
    bool underline = false;
};

enum class LineStyle { solid, dotted };

enum TextAlign { kTextAlignLeft = 0, kTextAlignCenter = 1, kTextAlignRight = 2 };

enum class CursorKind { standard = 0, wait = 1, sizeWE = 2, sizeNS = 3, sizeAll = 4, sizeNESW = 5, sizeNWSE = 6 };

// Pixels handed to the platform once, drawn many times.
class PlatformImage {
public:
    virtual ~PlatformImage() = default;
    virtual int width() const = 0;
    virtual int height() const = 0;
};

// One drawing pass on the window (or a part of it). Coordinates are window pixels; rectangles exclude their
// right and bottom edges here: the canvas translates its own conventions before it calls in.
class GraphicsContext {
public:
    virtual ~GraphicsContext() = default;

    // Copies a block of dest's size from source in the image to dest.
    virtual void copyImage(const PlatformImage& image, const Rect& dest, Point source) = 0;
    // The same, leaving the destination unchanged where the image has the key colour.
    virtual void copyImageKeyed(const PlatformImage& image, const Rect& dest, Point source, Color key) = 0;
    virtual void fillRect(const Rect& area, Color color) = 0;
    // A line from `from` towards `to`; the end pixel itself is not drawn, so polylines join without overlap.
    // Dotted lines draw three pixels on and three off.
    virtual void drawLine(Point from, Point to, Color color, int width, LineStyle style) = 0;
    // One line of text, vertically centred in box and aligned left, centred or right, clipped to box.
    // With opaqueBack the cells behind the glyphs are filled with that colour first.
    virtual void drawText(const char* text, const Rect& box, const FontSpec& font, Color color,
                          const Color* opaqueBack, int align) = 0;
};

// Entry of a popup menu as the platform shows it.
struct MenuItem {
    std::string text;
    int id = 0;                   // returned when chosen
    bool separator = false;
    bool checked = false;
    bool grayed = false;          // shown dimmed, cannot be chosen
    bool disabled = false;        // shown normally, cannot be chosen (titles)
    bool columnBreak = false;     // starts a new column
    std::vector<MenuItem> submenu;
    bool hasSubmenu = false;
};

// A single-line edit field opened over a rectangle of the window.
struct TextEditRequest {
    Rect area;                 // window coordinates, right and bottom exclusive
    std::string text;
    FontSpec font;
    Color fontColor;
    Color backColor;
    int align = kTextAlignLeft;
    int maxLength = 255;       // characters the edit accepts; typing stops there
};

// Told once when the edit ends (Return, keyboard focus lost, Escape). The listener normally destroys the
// session from inside this call, so the platform touches nothing of it afterwards.
class TextEditListener {
public:
    virtual ~TextEditListener() = default;
    virtual void textEditEnded() = 0;
};

class TextEditSession {
public:
    virtual ~TextEditSession() = default;  // closes the field and gives the keyboard focus back
    virtual std::string text() const = 0;
    virtual bool returnPressed() const = 0;
};

// What the window reports to the toolkit (the frame implements it).
class WindowEventHandler {
public:
    virtual ~WindowEventHandler() = default;
    virtual void windowPaint(GraphicsContext& context, const Rect& area) = 0;
    virtual void windowMouseDown(Point where) = 0;
    virtual int windowKeyDown(const KeyCode& key) = 0;
    virtual int windowKeyUp(const KeyCode& key) = 0;
    virtual void windowWheel(Point where, float distance) = 0;
    // kind 0: a list of file names; kind 1: one block of text.
    virtual void windowFilesDropped(const std::vector<std::string>& items, int kind, Point where) = 0;
    virtual void windowDestroyed() = 0;
};

// The native child window of one frame. Destroying it destroys the window and everything made for it.
class NativeWindow {
public:
    virtual ~NativeWindow() = default;

    virtual void* nativeHandle() const = 0;
    virtual void invalidate(const Rect& area) = 0;
    // Drawing outside a paint; what was drawn shows when the context is destroyed.
    virtual std::unique_ptr<GraphicsContext> beginDrawing() = 0;
    // Handles pending events and reports them to the handler. A call nested inside a handler (a drag loop
    // pumping idle) only paints and drops pointer and key events, which belong to the running drag.
    virtual void processEvents() = 0;
    // Paints at most one pending update; true when it painted.
    virtual bool dispatchOnePaint() = 0;
    // Current buttons and modifiers (kLeftButton ... kAltKey) and pointer position in window coordinates,
    // read from the live state so that drag loops can poll them.
    virtual int mouseButtons() = 0;
    virtual Point mousePosition() = 0;
    virtual void setCursor(CursorKind kind) = 0;
    // Shows a menu with its top-left corner at `where` (window coordinates) and runs it until it closes;
    // answers the chosen item's id, or -1.
    virtual int runPopupMenu(const std::vector<MenuItem>& items, Point where, bool rightButton) = 0;
    // Opens the edit field and gives it the keyboard focus; null when the platform cannot.
    virtual std::unique_ptr<TextEditSession> beginTextEdit(const TextEditRequest& request,
                                                           TextEditListener& listener) = 0;
};

class Platform {
public:
    virtual ~Platform() = default;

    // A child window of the given native parent; null when it cannot be created.
    virtual std::unique_ptr<NativeWindow> createWindow(void* parent, int width, int height,
                                                       WindowEventHandler& handler) = 0;
    virtual std::unique_ptr<PlatformImage> createImage(const BmpImage& pixels) = 0;
    // A bitmap that the module carries as a native resource of its own (null when the platform keeps none).
    virtual std::unique_ptr<PlatformImage> loadImageResource(int /*resourceId*/) { return nullptr; }
    // Milliseconds from an arbitrary start, wrapping like a 32-bit counter.
    virtual std::uint32_t tickCount() = 0;
    virtual void sleep(int milliseconds) = 0;
    virtual int doubleClickTime() = 0;
};

// The installed platform, or null. Installing null uninstalls.
void installPlatform(Platform* platform);
Platform* currentPlatform();

}  // namespace tolvane
