#include "editor/LayoutTable.h"

#include <vector>

#include <gtest/gtest.h>

#include "params/ParameterIds.h"

namespace tolvane {
namespace {

template <typename Table>
void addControls(const Table& table, std::vector<Rect>& areas, std::vector<int>& owners, int (&pageOf)[kNumParameters],
                 int page) {
    for (const layout::Control& run : table) {
        for (int i = 0; i < run.count; ++i) {
            areas.push_back(run.at(i));
            owners.push_back(run.index);
        }
        if (run.index >= 0) pageOf[run.index] |= page;
    }
}

bool overlap(const Rect& a, const Rect& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// A typing slip in the table shows as a control outside the editor, two controls on one place, or a
// parameter without controls (or on both pages).
TEST(LayoutTable, ControlsLieInsideTheEditorApartAndEveryParameterHasItsPage) {
    int pageOf[kNumParameters] = {};
    for (int page : {1, 2}) {
        SCOPED_TRACE(page);
        std::vector<Rect> areas;
        std::vector<int> owners;
        if (page == 1) addControls(layout::kPage1, areas, owners, pageOf, 1);
        else addControls(layout::kPage2, areas, owners, pageOf, 2);
        addControls(layout::kStrip, areas, owners, pageOf, 4);
        for (std::size_t i = 0; i < areas.size(); ++i) {
            const Rect& a = areas[i];
            EXPECT_TRUE(a.left >= 0 && a.top >= 0 && a.right <= kEditorWidth && a.bottom <= kEditorHeight)
                << "parameter " << owners[i] << " at " << a.left << "," << a.top;
            for (std::size_t j = i + 1; j < areas.size(); ++j)
                EXPECT_FALSE(overlap(a, areas[j])) << "parameters " << owners[i] << " and " << owners[j] << " at "
                                                   << a.left << "," << a.top << " and " << areas[j].left << ","
                                                   << areas[j].top;
        }
    }
    for (int index = 0; index < kNumParameters; ++index) {
        const bool reserved = index >= kFirstReserved && index < kFirstMapParameter;
        EXPECT_EQ(pageOf[index], reserved ? 0 : index < 77 ? 1 : index < 83 ? 4 : 2) << "parameter " << index;
    }
}

}  // namespace
}  // namespace tolvane
