#include "editor/MenuTables.h"

#include "dsp/Mappings.h"
#include "params/OptionLists.h"
#include "params/ParameterNames.h"

namespace tolvane {
namespace {

constexpr int kLearnOption = 128;  // the controller map is armed to learn the next controller

// Controllers 64, 120 and 123 keep their fixed meanings; lists that offer controllers leave them out.
bool offerable(int controller) { return controller != 64 && controller != 120 && controller != 123; }

class Builder {
public:
    Builder(int options, int align, int itemsPerColumn) {
        table_.options = options;
        table_.align = align;
        table_.itemsPerColumn = itemsPerColumn;
        table_.entryOf.assign(static_cast<std::size_t>(options), -1);
    }
    void entry(int option, const std::string& text, const std::string& closed) {
        table_.entryOf[static_cast<std::size_t>(option)] = table_.entryCount();
        table_.option.push_back(option);
        table_.text.push_back(text);
        table_.closed.push_back(closed);
    }
    void separator() {
        table_.option.push_back(MenuTable::kSeparator);
        table_.text.push_back("-");
        table_.closed.push_back("");
    }
    // Options without an entry show the entry of another option.
    void showAs(int option, int sameAs) {
        table_.entryOf[static_cast<std::size_t>(option)] = table_.entryOf[static_cast<std::size_t>(sameAs)];
    }
    MenuTable take() { return std::move(table_); }

private:
    MenuTable table_;
};

// The source and sensitivity menus: not assigned, the envelopes and LFOs, the voice and MIDI sources,
// (the constant,) then the controllers.
MenuTable sourceMenu(bool withConstant) {
    const bool sens = !withConstant;
    Builder b(withConstant ? 138 : 137, 1, 28);
    b.entry(0, "(not assigned)", "- - -");
    b.separator();
    const char* envelopes[4] = {"ENV1", "ENV2", "LFO1", "LFO2"};
    for (int i = 0; i < 4; ++i) b.entry(128 + i, envelopes[i], envelopes[i]);
    b.separator();
    b.entry(132, "Key", "Key");
    b.entry(133, "Velocity", "Velocity");
    b.entry(134, "Pitch Bend", sens ? "Bend" : "Pitch Bend");
    b.entry(135, "Channel Aftertouch", sens ? "Ch. A.T." : "Chan. A.T.");
    b.entry(136, "Polyphonic Aftertouch", "Poly A.T.");
    b.separator();
    if (withConstant) {
        b.entry(137, "Constant", "Constant");
        b.separator();
    }
    for (int c = 1; c <= 127; ++c) {
        if (!offerable(c)) continue;
        const std::string number = std::to_string(c);
        b.entry(c, "Control " + number, (sens ? "Ctl " : "Control ") + number);
    }
    for (int c : {64, 120, 123}) b.showAs(c, c + 1);
    return b.take();
}

MenuTable destinationMenu() {
    static const char* const closed[26] = {
        "- - -",        "OSC1 PWM",     "OSC1 Pitch",  "OSC2 FM",     "OSC2 PWM",    "OSC2 Pitch", "Mixer OSC1",
        "Mixer OSC2",   "Mixer Ring",   "Mixer Noise", "Saturaiton",  "Filter Freq.", "Filter Reso.", "Amplifier",
        "ENV1 Atack",   "ENV1 Decay",   "ENV1 Sust.",  "ENV1 Rel.",   "ENV2 Attack", "ENV2 Decay", "ENV2 Sust.",
        "ENV2 Rel.",    "LFO1 Speed",   "LFO1 Phase",  "LFO2 Speed",  "LFO2 Phase"};
    // Separators go before these options.
    static const int groupStarts[] = {1, 3, 6, 10, 13, 14, 18, 22, 24};
    Builder b(26, 1, -1);
    std::size_t group = 0;
    for (int o = 0; o < 26; ++o) {
        if (group < sizeof groupStarts / sizeof groupStarts[0] && groupStarts[group] == o) {
            b.separator();
            ++group;
        }
        b.entry(o, options::modDestinations.longText(o), closed[o]);
    }
    return b.take();
}

MenuTable controllerMenu() {
    Builder b(129, 0, 32);
    b.entry(0, "(not assigned)", "- - -");
    b.separator();
    b.entry(kLearnOption, "Learn...", "Learn...");
    b.separator();
    for (int c = 1; c <= 127; ++c) {
        if (!offerable(c)) continue;
        const char* name = options::controllerNames.longText(c);
        b.entry(c, name, name);
    }
    for (int c : {64, 120, 123}) b.showAs(c, c + 1);
    return b.take();
}

// Targets: the sound and voice parameters 0-98 in the order of the panels, grouped by section.
MenuTable targetMenu() {
    constexpr int kNone = 99;
    Builder b(100, 0, 28);
    b.entry(kNone, "(not assigned)", "- - -");
    auto range = [&b](int first, int last) {
        b.separator();
        for (int p = first; p <= last; ++p) b.entry(p, parameterLongName(p), parameterLongName(p));
    };
    range(0, 11);
    range(12, 23);
    range(24, 28);
    range(29, 41);
    range(42, 44);
    range(45, 50);
    range(51, 56);
    range(57, 60);
    range(61, 64);
    range(65, 76);
    b.separator();
    for (int slot = 0; slot < 8; ++slot) {
        b.entry(83 + slot, parameterLongName(83 + slot), parameterLongName(83 + slot));
        b.entry(91 + slot, parameterLongName(91 + slot), parameterLongName(91 + slot));
    }
    range(78, 82);
    // "Number of Voices" cannot be a target.
    b.showAs(77, kNone);
    return b.take();
}

}  // namespace

int MenuTable::entryFor(float value) const {
    int entry = entryOf[static_cast<std::size_t>(quantise(value, options))];
    return entry < 0 ? 0 : entry;
}

float MenuTable::valueOf(int entry) const {
    if (entry < 0 || entry >= entryCount() || option[static_cast<std::size_t>(entry)] < 0) return 0.0f;
    return optionValue(option[static_cast<std::size_t>(entry)], options);
}

namespace menus {

const MenuTable& modSource() {
    static const MenuTable table = sourceMenu(true);
    return table;
}

const MenuTable& sensSource() {
    static const MenuTable table = sourceMenu(false);
    return table;
}

const MenuTable& destination() {
    static const MenuTable table = destinationMenu();
    return table;
}

const MenuTable& controller() {
    static const MenuTable table = controllerMenu();
    return table;
}

const MenuTable& target() {
    static const MenuTable table = targetMenu();
    return table;
}

}  // namespace menus
}  // namespace tolvane
