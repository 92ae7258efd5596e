#include "platform/cairo/Windows1252.h"

#include <cairo.h>

#include <string>

#include <gtest/gtest.h>

#include "platform/cairo/CairoGraphics.h"

namespace tolvane {
namespace {

// The expected UTF-8 comes from the compiler encoding each character of the published Windows-1252
// table, not from the code under test.
TEST(Windows1252, EveryByteBecomesItsCharacterInUtf8) {
    struct Case {
        unsigned char byte;
        const char* utf8;
    };
    const Case cases[] = {
        {0x41, u8"A"},      {0x7E, u8"~"},      {0x80, u8"\u20AC"}, {0x81, u8"\u0081"}, {0x82, u8"\u201A"},
        {0x83, u8"\u0192"}, {0x84, u8"\u201E"}, {0x85, u8"\u2026"}, {0x86, u8"\u2020"}, {0x87, u8"\u2021"},
        {0x88, u8"\u02C6"}, {0x89, u8"\u2030"}, {0x8A, u8"\u0160"}, {0x8B, u8"\u2039"}, {0x8C, u8"\u0152"},
        {0x8D, u8"\u008D"}, {0x8E, u8"\u017D"}, {0x8F, u8"\u008F"}, {0x90, u8"\u0090"}, {0x91, u8"\u2018"},
        {0x92, u8"\u2019"}, {0x93, u8"\u201C"}, {0x94, u8"\u201D"}, {0x95, u8"\u2022"}, {0x96, u8"\u2013"},
        {0x97, u8"\u2014"}, {0x98, u8"\u02DC"}, {0x99, u8"\u2122"}, {0x9A, u8"\u0161"}, {0x9B, u8"\u203A"},
        {0x9C, u8"\u0153"}, {0x9D, u8"\u009D"}, {0x9E, u8"\u017E"}, {0x9F, u8"\u0178"}, {0xA0, u8"\u00A0"},
        {0xA9, u8"\u00A9"}, {0xC4, u8"\u00C4"}, {0xE9, u8"\u00E9"}, {0xFF, u8"\u00FF"},
    };
    for (const Case& c : cases) {
        const char text[2] = {static_cast<char>(c.byte), 0};
        EXPECT_EQ(windows1252ToUtf8(text), c.utf8) << std::hex << int(c.byte);
        EXPECT_EQ(utf8ToWindows1252(c.utf8), std::string(1, static_cast<char>(c.byte))) << std::hex << int(c.byte);
    }
    std::string all;
    for (int b = 1; b < 256; ++b) all += static_cast<char>(b);
    EXPECT_EQ(utf8ToWindows1252(windows1252ToUtf8(all.c_str())), all) << "every byte survives the round trip";
}

TEST(Windows1252, TypedTextKeepsWhatTheSetHoldsAndDropsTheRest) {
    // Kana, an emoji, a stray continuation byte, a cut sequence, an overlong "/" and a lone lead byte.
    const std::string typed = std::string(u8"Caf\u00E9 \u30AB\U0001F600 \u20AC5") + "\x80" + "x\xC3" + "\xC0\xAF" +
                              "\xE2" + u8"\u00FC";
    EXPECT_EQ(utf8ToWindows1252(typed), "Caf\xE9  \x80" "5x\xFC");
}

// A Cairo context handed text that is not UTF-8 stops drawing for good: nothing drawn after such a text
// would show. A name with a byte above 127 must leave later drawing intact.
TEST(Windows1252, TextAboveAsciiLeavesLaterDrawingIntact) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 40, 20);
    {
        CairoGraphics context(surface, Rect{0, 0, 40, 20});
        FontSpec font;
        context.drawText("Caf\xE9 \x80", Rect{0, 0, 40, 10}, font, Color{255, 255, 255, 0}, nullptr, kTextAlignLeft);
        context.fillRect(Rect{0, 12, 40, 20}, Color{0, 200, 0, 0});
        EXPECT_EQ(cairo_status(context.cairo()), CAIRO_STATUS_SUCCESS);
    }
    cairo_surface_flush(surface);
    const unsigned char* row = cairo_image_surface_get_data(surface) + 15 * cairo_image_surface_get_stride(surface);
    EXPECT_EQ(reinterpret_cast<const std::uint32_t*>(row)[20] & 0xFFFFFFu, 0x00C800u) << "the fill after the text shows";
    cairo_surface_destroy(surface);
}

}  // namespace
}  // namespace tolvane
