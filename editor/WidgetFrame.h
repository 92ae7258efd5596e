// The editor's frame: two pages that replace each other and the common strip shown with both, the fixed
// controls (page tabs, program commands, status lines, about overlay), and the way values reach the
// widget of their index whether or not its page is shown.
#pragma once

#include <memory>

#include "editor/WidgetPage.h"
#include "gui/ControlListener.h"
#include "gui/EditorFrame.h"

namespace tolvane {

class FileMenuWidget;
class ImageOverlay;
class MomentaryButton;
class ProgramNameWidget;
class ProgramSelectorWidget;
class SynthEditor;
class TextField;
class ToggleButton;

class WidgetFrame : public EditorFrame, private ControlListener {
public:
    static constexpr int kPageCount = 2;

    WidgetFrame(SynthEditor& editor, void* parentWindow);

    // Full redraws leave every child clean; partial ones the children they covered.
    void draw(Canvas& canvas) override;
    void drawRect(Canvas& canvas, const Rect& area) override;
    // Files dropped anywhere on the editor load by their extension, in the order given; text is refused.
    bool onFilesDropped(const char* const* items, std::int32_t count, std::int32_t kind, Point where) override;

    // Shows page 0 or 1; another index, or the page already shown, only marks the frame for redrawing.
    void selectPage(int page);
    int currentPage() const { return currentPage_; }

    // A value for index 0-175 (other indices change nothing).
    void showValue(int index, float value);
    void showProgramName(const char* name);
    void showStatus(const char* line1, const char* line2);
    void showProgramNumber(int program);

    // The widget that holds a value index, or null.
    ParamWidget* widgetFor(int index) const;
    WidgetPage& page(int page) { return *pages_[page]; }
    WidgetPage& strip() { return strip_; }
    ProgramNameWidget& programName() const { return *programName_; }
    TextField* statusLine(int line) const { return status_[line]; }

protected:
    ~WidgetFrame() override;

private:
    void valueChanged(Canvas* canvas, Control* control) override;
    void addPage(std::unique_ptr<WidgetPage> page);
    void addFixedControls();

    SynthEditor& synthEditor_;
    WidgetPage strip_;
    std::unique_ptr<WidgetPage> pages_[kPageCount];
    int pageCount_ = 0;
    int currentPage_ = -1;
    ProgramSelectorWidget* programSelector_ = nullptr;
    ProgramNameWidget* programName_ = nullptr;
    FileMenuWidget* fileMenu_ = nullptr;
    ImageOverlay* about_ = nullptr;
    TextField* status_[2] = {};
    ToggleButton* tabs_[kPageCount] = {};
    MomentaryButton* commands_[2] = {};
};

}  // namespace tolvane
