#include "tools/skin/SkinPreview.h"

#include <cmath>
#include <cstdio>
#include <map>

#include "tools/skin/SkinLayout.h"
#include "tools/skin/SkinPaint.h"

namespace tolvane::skin {

namespace {

// Text areas as the toolkit draws them in the editor's common text look: filled with the back colour,
// outlined in the frame colour, 11-pixel text in the font colour.
void drawTextArea(cairo_t* cr, const Placement& p) {
    fillRect(cr, p.x, p.y, p.width, p.height, palette::displayBack);
    setColour(cr, palette::displayFrame);
    cairo_set_line_width(cr, 1.0);
    cairo_rectangle(cr, p.x + 0.5, p.y + 0.5, p.width - 1, p.height - 1);
    cairo_stroke(cr);
    bool centred = p.width < 90;  // the slot menus centre their text, the wide fields start at the left
    cairo_save(cr);
    cairo_rectangle(cr, p.x + 1, p.y + 1, p.width - 2, p.height - 2);
    cairo_clip(cr);
    Font font{11.0, false, 1.0};
    double baseline = p.y + p.height / 2.0 + 4.0;
    if (centred)
        drawText(cr, p.text, p.x + p.width / 2.0, baseline, Align::Centre, font, palette::amber);
    else
        drawText(cr, p.text, p.x + 2, baseline, Align::Left, font, palette::amber);
    cairo_restore(cr);
}

void drawPlacement(cairo_t* cr, const Placement& p, const std::map<int, BmpImage>& bitmaps, int page) {
    if (p.kind == ControlKind::TextArea) {
        drawTextArea(cr, p);
        return;
    }
    const BmpImage& bitmap = bitmaps.at(p.bitmap);
    switch (p.kind) {
        case ControlKind::Knob: {
            // The film strip's frame for a value: (frames - 1) x frame height x value, down to a whole frame.
            int frames = bitmap.height / 22;
            int y = static_cast<int>((frames - 1) * 22 * p.state);
            y -= y % 22;
            paintBmp(cr, bitmap, 0, y, 22, 22, p.x, p.y);
            break;
        }
        case ControlKind::Button: {
            bool lit = p.state != 0.0;
            if (p.bitmap == 137 && p.column < 90) lit = (p.column == 0) == (page == 1);  // the shown page's tab
            paintBmp(cr, bitmap, p.column, lit ? bitmap.height / 2 : 0, p.width, p.height, p.x, p.y);
            break;
        }
        case ControlKind::Digits: {
            int count = p.width / 10;
            int number = static_cast<int>(p.state);
            for (int j = count - 1; j >= 0; --j) {
                paintBmp(cr, bitmap, 0, (number % 10) * 13, 10, 13, p.x + 10 * j, p.y);
                number /= 10;
            }
            break;
        }
        case ControlKind::StepSwitch:
            paintBmp(cr, bitmap, p.column, 9, 18, 9, p.x, p.y);
            break;
        case ControlKind::TextArea:
            break;
    }
}

bool writePng(cairo_surface_t* surface, const std::string& path) {
    if (cairo_surface_write_to_png(surface, path.c_str()) != CAIRO_STATUS_SUCCESS) {
        std::fprintf(stderr, "tolvane2-skin: cannot write %s\n", path.c_str());
        return false;
    }
    return true;
}

// Every small bitmap at four times its size, for judging the images on their own. The knob strips show
// every eighth frame in a row.
bool writeSheet(const std::map<int, BmpImage>& bitmaps, const std::string& path) {
    const int scale = 4;
    const int width = 1000;
    const int height = 1600;
    Surface sheet(width, height);
    cairo_t* cr = sheet.cr();
    fillRect(cr, 0, 0, width, height, {90, 90, 90});
    cairo_scale(cr, scale, scale);
    int x = 2;
    int y = 2;
    int rowHeight = 0;
    auto place = [&](int w, int h) {
        if (x + w + 2 > width / scale) {
            x = 2;
            y += rowHeight + 3;
            rowHeight = 0;
        }
        int px = x;
        x += w + 3;
        if (h > rowHeight) rowHeight = h;
        return std::pair<int, int>(px, y);
    };
    for (int id : {131, 132}) {
        const BmpImage& strip = bitmaps.at(id);
        for (int frame = 0; frame < 128; frame += 9) {
            auto [px, py] = place(22, 22);
            paintBmp(cr, strip, 0, frame * 22, 22, 22, px, py);
        }
        auto [px, py] = place(22, 22);
        paintBmp(cr, strip, 0, 127 * 22, 22, 22, px, py);
        x = width;  // next row
    }
    for (const auto& [id, image] : bitmaps) {
        if (id < 133) continue;
        auto [px, py] = place(image.width, image.height);
        paintBmp(cr, image, 0, 0, image.width, image.height, px, py);
    }
    return writePng(sheet.surface(), path);
}

}  // namespace

bool writePreviews(const std::map<int, BmpImage>& bitmaps, const std::string& directory) {
    for (int page = 1; page <= 2; ++page) {
        Surface s(kEditorWidth, kEditorHeight);
        cairo_t* cr = s.cr();
        paintBmp(cr, bitmaps.at(page == 1 ? 128 : 129), 0, 0, kEditorWidth, kEditorHeight, 0, 0);
        for (const Placement& p : page == 1 ? page1Controls() : page2Controls()) drawPlacement(cr, p, bitmaps, page);
        for (const Placement& p : stripControls()) drawPlacement(cr, p, bitmaps, page);

        std::string base = directory + "/preview-page" + std::to_string(page);
        if (!writePng(s.surface(), base + ".png")) return false;

        // The same page at twice the size, pixels doubled, for judging details.
        Surface big(2 * kEditorWidth, 2 * kEditorHeight);
        cairo_scale(big.cr(), 2, 2);
        cairo_set_source_surface(big.cr(), s.surface(), 0, 0);
        cairo_pattern_set_filter(cairo_get_source(big.cr()), CAIRO_FILTER_NEAREST);
        cairo_paint(big.cr());
        if (!writePng(big.surface(), base + "-x2.png")) return false;
    }

    if (!writeSheet(bitmaps, directory + "/preview-bitmaps.png")) return false;

    // The about overlay over page 1, as it shows when opened.
    Surface s(kEditorWidth, kEditorHeight);
    paintBmp(s.cr(), bitmaps.at(128), 0, 0, kEditorWidth, kEditorHeight, 0, 0);
    for (const Placement& p : page1Controls()) drawPlacement(s.cr(), p, bitmaps, 1);
    for (const Placement& p : stripControls()) drawPlacement(s.cr(), p, bitmaps, 1);
    paintBmp(s.cr(), bitmaps.at(130), 0, 0, 186, 142, 266, 60);
    return writePng(s.surface(), directory + "/preview-about.png");
}

}  // namespace tolvane::skin
