// The list menus' tables: every option of a parameter reaches an entry that means it, and every entry
// sends the option it shows.
#include "editor/MenuTables.h"

#include <gtest/gtest.h>

#include "dsp/Mappings.h"

namespace tolvane {
namespace {

struct Expectation {
    const char* name;
    const MenuTable& table;
    int options;
    int entries;
};

TEST(MenuTables, EveryOptionShowsAnEntryThatSendsItOrItsStandIn) {
    const Expectation tables[] = {
        {"source", menus::modSource(), 138, 139},      {"sensitivity", menus::sensSource(), 137, 137},
        {"destination", menus::destination(), 26, 35}, {"controller", menus::controller(), 129, 128},
        {"target", menus::target(), 100, 111},
    };
    for (const Expectation& e : tables) {
        SCOPED_TRACE(e.name);
        EXPECT_EQ(e.table.options, e.options);
        EXPECT_EQ(e.table.entryCount(), e.entries);
        for (int option = 0; option < e.options; ++option) {
            const int entry = e.table.entryFor(optionValue(option, e.options));
            const int shown = e.table.option[static_cast<std::size_t>(entry)];
            // Controllers that cannot be offered show the next controller; "Number of Voices" (target 77)
            // shows "(not assigned)".
            int expected = option;
            const bool controllers = e.options != 26 && e.options != 100;
            if (controllers && (option == 64 || option == 120 || option == 123)) expected = option + 1;
            if (e.options == 100 && option == 77) expected = 99;
            EXPECT_EQ(shown, expected) << option;
            EXPECT_FLOAT_EQ(e.table.valueOf(entry), optionValue(expected, e.options)) << option;
        }
        for (int entry = 0; entry < e.entries; ++entry) {
            const bool separator = e.table.option[static_cast<std::size_t>(entry)] == MenuTable::kSeparator;
            EXPECT_EQ(separator, e.table.text[static_cast<std::size_t>(entry)] == "-") << entry;
        }
        EXPECT_EQ(e.table.text[0], "(not assigned)");
        EXPECT_EQ(e.table.option[1], MenuTable::kSeparator);
    }
}

}  // namespace
}  // namespace tolvane
