// A bitmap of the module's resources (or built in memory), reference counted, drawn opaque or with a
// colour key. A bitmap that cannot be loaded has size 0 x 0 and draws nothing.
#pragma once

#include <memory>

#include "gui/BmpImage.h"
#include "gui/Geometry.h"
#include "gui/ReferenceCounted.h"

namespace tolvane {

class Canvas;
class PlatformImage;

class BitmapResource : public ReferenceCounted {
public:
    // Looks the id up among the embedded resources and decodes it.
    explicit BitmapResource(int resourceId);
    // Takes pixels made elsewhere (tests, generated images).
    explicit BitmapResource(BmpImage pixels);

    virtual void draw(Canvas& canvas, const Rect& dest, Point source);
    virtual void drawTransparent(Canvas& canvas, const Rect& dest, Point source);

    int getWidth() const { return width_; }
    int getHeight() const { return height_; }
    bool isLoaded() const { return width_ > 0 && height_ > 0; }

protected:
    ~BitmapResource() override;

private:
    // The platform's copy of the pixels, made on first use (a bitmap may exist before a platform does).
    const PlatformImage* image();
    void blit(Canvas& canvas, const Rect& dest, Point source, bool keyed);

    BmpImage pixels_;  // kept only until the platform image exists
    std::unique_ptr<PlatformImage> image_;
    int width_ = 0;
    int height_ = 0;
    Color transparentColor_ = kTransparentKeyColor;
};

}  // namespace tolvane
