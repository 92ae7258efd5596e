#include "gui/BitmapResource.h"

#include <utility>

#include "gui/Canvas.h"
#include "gui/EmbeddedResources.h"
#include "gui/Platform.h"

namespace tolvane {

BitmapResource::BitmapResource(int resourceId) {
    const EmbeddedResource* resource = findEmbeddedResource(resourceId);
    if (resource && decodeBmp(resource->data, resource->size, pixels_)) {
        width_ = pixels_.width;
        height_ = pixels_.height;
        return;
    }
    // A module whose bitmaps are native resources: the platform loads them.
    if (Platform* platform = currentPlatform()) {
        image_ = platform->loadImageResource(resourceId);
        if (image_ && image_->width() > 0 && image_->height() > 0) {
            width_ = image_->width();
            height_ = image_->height();
        } else {
            image_.reset();
        }
    }
}

BitmapResource::BitmapResource(BmpImage pixels) : pixels_(std::move(pixels)) {
    if (pixels_.width > 0 && pixels_.height > 0 &&
        pixels_.pixels.size() == static_cast<std::size_t>(pixels_.width) * pixels_.height) {
        width_ = pixels_.width;
        height_ = pixels_.height;
    } else {
        pixels_ = BmpImage{};
    }
}

BitmapResource::~BitmapResource() = default;

const PlatformImage* BitmapResource::image() {
    if (!image_ && isLoaded()) {
        Platform* platform = currentPlatform();
        if (!platform) return nullptr;
        image_ = platform->createImage(pixels_);
        if (image_) pixels_ = BmpImage{};
    }
    return image_.get();
}

void BitmapResource::draw(Canvas& canvas, const Rect& dest, Point source) { blit(canvas, dest, source, false); }

void BitmapResource::drawTransparent(Canvas& canvas, const Rect& dest, Point source) {
    blit(canvas, dest, source, true);
}

void BitmapResource::blit(Canvas& canvas, const Rect& dest, Point source, bool keyed) {
    GraphicsContext* context = canvas.graphics();
    if (!context || !isLoaded()) return;
    const PlatformImage* platformImage = image();
    if (!platformImage) return;
    Rect shifted = dest.offsetBy(canvas.getOffset().h, canvas.getOffset().v);
    if (keyed)
        context->copyImageKeyed(*platformImage, shifted, source, transparentColor_);
    else
        context->copyImage(*platformImage, shifted, source);
}

}  // namespace tolvane
