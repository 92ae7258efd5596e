#include "params/FileDialogs.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(DefaultExtension, OnlyAddedWhenTheNameHasNone) {
    EXPECT_EQ(withDefaultExtension("/a/b/sound", FileKind::Program), "/a/b/sound.prog");
    EXPECT_EQ(withDefaultExtension("sound", FileKind::Bank), "sound.bank");
    EXPECT_EQ(withDefaultExtension("/a.dir/maps", FileKind::ControllerMap), "/a.dir/maps.cmap");
    EXPECT_EQ(withDefaultExtension("/a/b/sound.prg", FileKind::Program), "/a/b/sound.prg");
    EXPECT_EQ(withDefaultExtension("/a/b/sound.txt", FileKind::Bank), "/a/b/sound.txt");
}

}  // namespace
}  // namespace tolvane
