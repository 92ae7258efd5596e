// The committed skin: the 24 bitmaps the plug-in embeds, checked as the editor will read them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "editor/LayoutTable.h"
#include "gui/BmpImage.h"
#include "gui/EmbeddedResources.h"

namespace tolvane {
namespace {

BmpImage loadResource(int id) {
    BmpImage image;
    const EmbeddedResource* resource = findEmbeddedResource(id);
    if (resource) decodeBmp(resource->data, resource->size, image);
    return image;
}

int red(std::uint32_t c) { return static_cast<int>((c >> 16) & 0xFF); }
int green(std::uint32_t c) { return static_cast<int>((c >> 8) & 0xFF); }
int blue(std::uint32_t c) { return static_cast<int>(c & 0xFF); }
double luminance(std::uint32_t c) { return 0.299 * red(c) + 0.587 * green(c) + 0.114 * blue(c); }
int channelDistance(std::uint32_t a, std::uint32_t b) {
    return std::max({std::abs(red(a) - red(b)), std::abs(green(a) - green(b)), std::abs(blue(a) - blue(b))});
}

std::vector<std::uint32_t> block(const BmpImage& image, int x, int y, int w, int h) {
    std::vector<std::uint32_t> pixels;
    for (int row = y; row < y + h; ++row)
        for (int col = x; col < x + w; ++col) pixels.push_back(image.at(col, row));
    return pixels;
}

// Pixels that differ by more than 48 levels in some channel.
int strongDifferences(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b) {
    int count = 0;
    for (std::size_t i = 0; i < a.size(); ++i) count += channelDistance(a[i], b[i]) > 48;
    return count;
}

// The summed channel distance: about 150 per pixel of full-contrast ink.
int totalDifference(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b) {
    int sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += channelDistance(a[i], b[i]);
    return sum;
}

double meanLuminance(const std::vector<std::uint32_t>& pixels) {
    double sum = 0;
    for (std::uint32_t p : pixels) sum += luminance(p);
    return sum / static_cast<double>(pixels.size());
}

const std::uint32_t kAmber = 0xE5B034;        // (229,176,52), the font colour of the text controls
const std::uint32_t kDisplayBack = 0x332200;  // (51,34,0), their back colour

struct Size {
    int id, width, height;
};

// The editor's bitmap table: ids 128 to 151 and their sizes.
const Size kSizes[] = {
    {128, 718, 310}, {129, 718, 310}, {130, 186, 142}, {131, 22, 2816}, {132, 22, 2816}, {133, 10, 130},
    {134, 18, 27},   {135, 36, 27},   {136, 16, 24},   {137, 126, 24},  {138, 48, 24},   {139, 64, 24},
    {140, 72, 24},   {141, 90, 24},   {142, 30, 24},   {143, 30, 24},   {144, 120, 24},  {145, 240, 24},
    {146, 36, 20},   {147, 72, 20},   {148, 90, 24},   {149, 30, 24},   {150, 96, 24},   {151, 96, 24},
};

TEST(SkinBitmaps, EveryResourceIsOneEmbeddedFileOfItsListedSize) {
    std::filesystem::path directory = std::filesystem::path(TOLVANE_SOURCE_DIR) / "resources";
    for (const Size& size : kSizes) {
        SCOPED_TRACE(size.id);
        int files = 0;
        for (const auto& entry : std::filesystem::directory_iterator(directory)) {
            std::string name = entry.path().filename().string();
            std::string prefix = std::to_string(size.id) + "-";
            files += name.compare(0, prefix.size(), prefix) == 0 && entry.path().extension() == ".bmp";
        }
        EXPECT_EQ(files, 1);
        const EmbeddedResource* resource = findEmbeddedResource(size.id);
        ASSERT_NE(resource, nullptr);
        EXPECT_EQ(resource->data[28], 24) << "24 bits per pixel";
        BmpImage image;
        ASSERT_TRUE(decodeBmp(resource->data, resource->size, image));
        EXPECT_EQ(image.width, size.width);
        EXPECT_EQ(image.height, size.height);
    }
}

// Button bitmaps: two rows, "off" above and "on" below. The buttons that appear side by side (one run of
// the editor's layout table) must tell themselves apart.
struct Column {
    int x, width;
};
struct ButtonGroup {
    int id;
    int rowHeight;
    std::vector<Column> columns;
};

std::vector<ButtonGroup> buttonGroups() {
    std::vector<ButtonGroup> groups;
    auto addRuns = [&](const auto& table) {
        for (const layout::Control& run : table) {
            if (run.kind() != layout::Kind::Button) continue;
            ButtonGroup group{run.bitmap, run.height, {}};
            for (int i = 0; i < run.count; ++i) group.columns.push_back({run.columnOf(i), run.width});
            groups.push_back(group);
        }
    };
    addRuns(layout::kPage1);
    addRuns(layout::kPage2);
    addRuns(layout::kStrip);
    // The slope pictures of the other three filter types: band pass and reject switch two keys at a time,
    // so a pair is one button.
    groups.push_back({145, 12, {{60, 15}, {75, 15}, {90, 15}, {105, 15}}});
    groups.push_back({145, 12, {{120, 30}, {150, 30}}});
    groups.push_back({145, 12, {{180, 30}, {210, 30}}});
    return groups;
}

TEST(SkinBitmaps, ButtonsShowDistinctOffAndOnImagesAndDifferFromTheirNeighbours) {
    for (const ButtonGroup& group : buttonGroups()) {
        BmpImage image = loadResource(group.id);
        ASSERT_EQ(image.height, 2 * group.rowHeight) << group.id;
        for (std::size_t i = 0; i < group.columns.size(); ++i) {
            const Column& c = group.columns[i];
            SCOPED_TRACE("bitmap " + std::to_string(group.id) + " column " + std::to_string(c.x));
            std::vector<std::uint32_t> off = block(image, c.x, 0, c.width, group.rowHeight);
            std::vector<std::uint32_t> on = block(image, c.x, group.rowHeight, c.width, group.rowHeight);
            // A lit button must stand out, not differ by a few pixels: a tenth of the image changes clearly,
            // and the lower row is the lit one.
            EXPECT_GE(strongDifferences(off, on) * 10, static_cast<int>(off.size()));
            EXPECT_GT(meanLuminance(on), meanLuminance(off) + 10.0);
            for (std::size_t j = i + 1; j < group.columns.size(); ++j) {
                const Column& o = group.columns[j];
                std::vector<std::uint32_t> other = block(image, o.x, 0, o.width, group.rowHeight);
                // Neighbours may differ in one character only ("ENV1", "ENV2"), but by at least three
                // pixels' worth of full-contrast ink.
                EXPECT_GE(totalDifference(off, other), 3 * 130) << "too like column " << o.x;
            }
        }
    }
}

TEST(SkinBitmaps, DigitsAreTenAmberNumeralsOnTheDisplayBackColour) {
    BmpImage digits = loadResource(133);
    ASSERT_EQ(digits.height, 130);
    std::vector<int> ink(10);
    for (int d = 0; d < 10; ++d) {
        EXPECT_EQ(digits.at(0, 13 * d), kDisplayBack) << d;
        for (int y = 13 * d; y < 13 * d + 13; ++y)
            for (int x = 0; x < 10; ++x) ink[d] += channelDistance(digits.at(x, y), kAmber) < 40;
        EXPECT_GT(ink[d], 8) << d;
    }
    // No two digits look alike.
    for (int d = 0; d < 10; ++d) {
        for (int e = d + 1; e < 10; ++e)
            EXPECT_GE(totalDifference(block(digits, 0, 13 * d, 10, 13), block(digits, 0, 13 * e, 10, 13)), 3 * 130)
                << d << " and " << e;
    }
}

// The direction from the frame's centre to its pointer, in degrees counter-clockwise from the right,
// measured from the pixels of the cap's ring that stand out from the ring's typical colour.
double pointerDirection(const BmpImage& strip, int frame) {
    std::vector<std::pair<double, std::uint32_t>> ring;  // (radius, pixel)
    std::vector<double> levels;
    for (int y = 0; y < 22; ++y) {
        for (int x = 0; x < 22; ++x) {
            double dx = x + 0.5 - 11.0;
            double dy = y + 0.5 - 11.0;
            double r = std::hypot(dx, dy);
            if (r >= 2.5 && r <= 6.0) levels.push_back(luminance(strip.at(x, frame * 22 + y)));
        }
    }
    std::vector<double> sorted = levels;
    std::nth_element(sorted.begin(), sorted.begin() + sorted.size() / 2, sorted.end());
    double median = sorted[sorted.size() / 2];
    double sx = 0, sy = 0;
    for (int y = 0; y < 22; ++y) {
        for (int x = 0; x < 22; ++x) {
            double dx = x + 0.5 - 11.0;
            double dy = y + 0.5 - 11.0;
            double r = std::hypot(dx, dy);
            if (r < 2.5 || r > 6.0) continue;
            double contrast = std::abs(luminance(strip.at(x, frame * 22 + y)) - median);
            if (contrast < 60) continue;
            sx += contrast * dx / r;
            sy += contrast * -dy / r;  // image y grows downwards
        }
    }
    return std::atan2(sy, sx) * 180.0 / 3.14159265358979323846;
}

TEST(SkinBitmaps, KnobStripsHold128DistinctFramesWithThePointerOnTheKnobAngle) {
    for (int id : {131, 132}) {
        SCOPED_TRACE(id);
        BmpImage strip = loadResource(id);
        ASSERT_EQ(strip.height, 128 * 22);
        std::set<std::vector<std::uint32_t>> frames;
        for (int frame = 0; frame < 128; ++frame) frames.insert(block(strip, 0, frame * 22, 22, 22));
        EXPECT_EQ(frames.size(), 128u);

        // Value 0 points to the lower left (225 degrees), value 1 to the lower right (-45 degrees),
        // turning clockwise through the top; the travel from the minimum only grows.
        double previousTravel = -1e9;
        for (int frame = 0; frame < 128; ++frame) {
            double direction = pointerDirection(strip, frame);
            double expected = 225.0 - 270.0 * frame / 127.0;
            double error = std::remainder(direction - expected, 360.0);
            EXPECT_LT(std::abs(error), 8.0) << "frame " << frame << " points to " << direction;
            double travel = 270.0 * frame / 127.0 - error;
            EXPECT_GT(travel, previousTravel - 1.0) << "frame " << frame;
            previousTravel = std::max(previousTravel, travel);
        }
        EXPECT_NE(block(strip, 0, 0, 22, 22), block(strip, 0, 127 * 22, 22, 22));
    }
}

// A label is light text on the dark panel: count the pixels far brighter than the panel in a box.
int lightPixels(const BmpImage& image, int x0, int y0, int x1, int y1) {
    int count = 0;
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x) count += luminance(image.at(x, y)) > 110;
    return count;
}

// Every knob of page 1 and of the strip is labelled just above; on page 2 the slots' depth knobs and
// their sensitivity menus.
TEST(SkinBitmaps, BackgroundsLabelTheControlsJustAboveThem) {
    struct Control {
        int page, x, y, width;
    };
    std::vector<Control> sample;
    auto addKnobs = [&](const auto& table) {
        for (const layout::Control& run : table)
            if (run.kind() == layout::Kind::Knob) sample.push_back({1, run.x, run.y, run.width});
    };
    addKnobs(layout::kPage1);
    addKnobs(layout::kStrip);
    for (const layout::Control& run : layout::kPage2)
        if ((run.index >= 83 && run.index < 91) || (run.index >= 107 && run.index < 115))
            sample.push_back({2, run.x, run.y, run.width});
    ASSERT_GT(sample.size(), 60u);
    BmpImage pages[2] = {loadResource(128), loadResource(129)};
    for (const Control& c : sample) {
        const BmpImage& page = pages[c.page - 1];
        ASSERT_EQ(page.width, 718);
        int light = lightPixels(page, c.x - 4, c.y - 12, c.x + c.width + 4, c.y - 1);
        EXPECT_GE(light, 8) << "page " << c.page << " control at (" << c.x << "," << c.y << ")";
    }
    // The panel itself carries no such text: the empty panel under the oscillator's sync key is dark.
    EXPECT_EQ(lightPixels(pages[0], 8, 118, 38, 126), 0);
}

}  // namespace
}  // namespace tolvane
