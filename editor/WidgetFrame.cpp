#include "editor/WidgetFrame.h"

#include "editor/EditorLayout.h"
#include "editor/EditorSkin.h"
#include "editor/FileMenuWidget.h"
#include "editor/LayoutTable.h"
#include "editor/ProgramNameWidget.h"
#include "editor/ProgramSelectorWidget.h"
#include "editor/SynthController.h"
#include "editor/SynthEditor.h"
#include "gui/ImageOverlay.h"
#include "gui/MomentaryButton.h"
#include "gui/TextField.h"
#include "gui/ToggleButton.h"
#include "params/ParameterIds.h"

namespace tolvane {
namespace {

constexpr int kPage1Values = 77;           // 0-76
constexpr int kFirstStripValue = 77;       // 77-82
constexpr int kFirstPage2Value = 83;       // 83-175
constexpr int kTabTagBase = 0;             // tabs 0 and 1
constexpr EditorCommand kButtonCommands[2] = {EditorCommand::Recall, EditorCommand::Init};

bool covers(const Rect& area, const Rect& bounds) {
    return bounds.left >= area.left && bounds.top >= area.top && bounds.right <= area.right &&
           bounds.bottom <= area.bottom;
}

}  // namespace

WidgetFrame::WidgetFrame(SynthEditor& editor, void* parentWindow)
    : EditorFrame(Rect{0, 0, kEditorWidth, kEditorHeight}, parentWindow, &editor), synthEditor_(editor) {
    strip_.show(*this);

    auto page1 = std::make_unique<WidgetPage>(editor.bitmap(skin::kPage1Background));
    addPage1Widgets(*page1, editor);
    auto page2 = std::make_unique<WidgetPage>(editor.bitmap(skin::kPage2Background));
    addPage2Widgets(*page2, editor);
    addPage(std::move(page1));
    addPage(std::move(page2));

    addStripWidgets(strip_, editor);
    programSelector_ = strip_.add(std::make_unique<ProgramSelectorWidget>(editor));
    programName_ = strip_.add(std::make_unique<ProgramNameWidget>(editor));
    fileMenu_ = strip_.add(std::make_unique<FileMenuWidget>(editor));
    addFixedControls();
}

WidgetFrame::~WidgetFrame() {
    // The widgets take their controls off the frame before the frame lets go of its remaining views.
    for (auto& page : pages_)
        if (page) page->hide();
    strip_.hide();
}

void WidgetFrame::addPage(std::unique_ptr<WidgetPage> page) {
    pages_[pageCount_] = std::move(page);
    if (currentPage_ < 0) {
        currentPage_ = pageCount_;
        setBackground(pages_[currentPage_]->background());
        pages_[currentPage_]->show(*this);
    }
    ++pageCount_;
}

void WidgetFrame::addFixedControls() {
    using namespace skin;
    about_ = new ImageOverlay(Rect{584, 268, 710, 283}, this, 0, synthEditor_.bitmap(kAboutImage),
                              Rect{266, 60, 452, 202}, Point{0, 0});
    addView(about_);

    const layout::Control& statusLines = *layout::find(layout::kStrip, layout::Widget::StatusLines);
    for (int line = 0; line < 2; ++line) {
        auto* status = new TextField(statusLines.at(line), nullptr, line, "", nullptr, 0);
        ParamWidget::applyTextLook(*status, kTextAlignLeft);
        status->setMouseEnabled(false);  // shows text, never takes a press or the focus
        status_[line] = status;
        addView(status);
    }
    const layout::Control& tabs = *layout::find(layout::kStrip, layout::Widget::PageTabs);
    for (int page = 0; page < kPageCount; ++page) {
        tabs_[page] = new ToggleButton(tabs.at(page), this, kTabTagBase + page, synthEditor_.bitmap(tabs.bitmap),
                                       Point{tabs.columnOf(page), 0});
        tabs_[page]->setValue(page == currentPage_ ? 1.0f : 0.0f);
        addView(tabs_[page]);
    }
    const layout::Control& buttons = *layout::find(layout::kStrip, layout::Widget::ProgramCommands);
    for (int i = 0; i < 2; ++i) {
        // Tagged with the command's negative number: no parameter, so its press is no edit gesture.
        const auto tag = static_cast<std::int32_t>(kButtonCommands[i]);
        commands_[i] = new MomentaryButton(buttons.at(i), this, tag, buttons.height,
                                           synthEditor_.bitmap(buttons.bitmap), Point{buttons.columnOf(i), 0});
        addView(commands_[i]);
    }
}

// ---- drawing

void WidgetFrame::draw(Canvas& canvas) {
    EditorFrame::draw(canvas);
    for (std::int32_t i = 0; i < getViewCount(); ++i) getViewAt(i)->setDirty(false);
}

void WidgetFrame::drawRect(Canvas& canvas, const Rect& area) {
    EditorFrame::drawRect(canvas, area);
    for (std::int32_t i = 0; i < getViewCount(); ++i) {
        View* view = getViewAt(i);
        if (covers(area, view->getBounds())) view->setDirty(false);
    }
}

// The whole editor is one drop target: a musician drops a sound on the window, not on a control.
bool WidgetFrame::onFilesDropped(const char* const* items, std::int32_t count, std::int32_t kind, Point) {
    if (kind != 0 || !items) return false;
    for (std::int32_t i = 0; i < count; ++i)
        if (items[i]) synthEditor_.controller().loadDroppedFile(items[i]);
    return count > 0;
}

// ---- pages

void WidgetFrame::selectPage(int page) {
    if (page < 0 || page >= pageCount_ || page == currentPage_) {
        setDirty(true);
        return;
    }
    pages_[currentPage_]->hide();
    currentPage_ = page;
    setBackground(pages_[page]->background());
    pages_[page]->show(*this);
    for (int t = 0; t < kPageCount; ++t)
        if (tabs_[t]) tabs_[t]->setValue(t == page ? 1.0f : 0.0f);
    setDirty(true);
}

// ---- values from the plug-in

ParamWidget* WidgetFrame::widgetFor(int index) const {
    if (index < 0) return nullptr;
    if (index < kPage1Values) return pages_[0]->at(index);
    if (index < kFirstPage2Value) return strip_.at(index - kFirstStripValue);
    if (index < kNumParameters) return pages_[1]->at(index - kFirstPage2Value);
    return nullptr;
}

void WidgetFrame::showValue(int index, float value) {
    if (ParamWidget* widget = widgetFor(index)) widget->setValue(value);
}

void WidgetFrame::showProgramName(const char* name) { programName_->showName(name); }

void WidgetFrame::showStatus(const char* line1, const char* line2) {
    status_[0]->setText(line1 ? line1 : "");
    status_[1]->setText(line2 ? line2 : "");
}

void WidgetFrame::showProgramNumber(int program) { programSelector_->setValue(static_cast<float>(program)); }

// ---- the fixed controls: page tabs and program commands

void WidgetFrame::valueChanged(Canvas*, Control* control) {
    for (int page = 0; page < kPageCount; ++page) {
        if (control != tabs_[page]) continue;
        tabs_[page]->setValue(1.0f);  // a tab pressed again stays lit
        selectPage(page);
        return;
    }
    for (int i = 0; i < 2; ++i) {
        if (control != commands_[i]) continue;
        if (commands_[i]->getValue() == 1.0f) synthEditor_.controller().runCommand(kButtonCommands[i]);
        return;
    }
}

}  // namespace tolvane
