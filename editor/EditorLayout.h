// Where every parameter of the editor sits: the widgets of page 1 (oscillators to effect, values 0-76),
// page 2 (modulation slots, tuning, MIDI and controller maps, values 83-175) and the common strip
// (values 77-82), in value order.
#pragma once

namespace tolvane {

class SynthEditor;
class WidgetPage;

void addPage1Widgets(WidgetPage& page, SynthEditor& editor);
void addPage2Widgets(WidgetPage& page, SynthEditor& editor);
// The voice settings of the strip; the program selector, name and file menu follow them.
void addStripWidgets(WidgetPage& strip, SynthEditor& editor);

}  // namespace tolvane
