#include "platform/portable/PictureDecoder.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

#include <libheif/heif.h>
#include <memory>
#include <mutex>

namespace quorvane {

namespace {

constexpr int kLargestPicture = 1024; // MiB of pixels; Qt's own limit keeps out a picture of 6016 by 6016

template <typename T>
using HeifPointer = std::unique_ptr<T, void (*)(const T*)>;

QImage qtPicture(const QByteArray& bytes) {
    static std::once_flag isLimitSet;
    std::call_once(isLimitSet, [] { QImageReader::setAllocationLimit(kLargestPicture); });
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    return reader.read();
}

/// The library turns the picture upright by itself.
QImage copied(const heif_image* picture) {
    int stride = 0;
    const uint8_t* pixels = heif_image_get_plane_readonly(picture, heif_channel_interleaved, &stride);
    if (pixels == nullptr) {
        return {};
    }
    return QImage(pixels, heif_image_get_width(picture, heif_channel_interleaved),
                  heif_image_get_height(picture, heif_channel_interleaved), stride, QImage::Format_RGBA8888)
        .copy();
}

/// The colours of a HEIC picture are mostly those of a wide space.
QColorSpace colorSpaceOf(const heif_image_handle* handle) {
    QByteArray profile(static_cast<qsizetype>(heif_image_handle_get_raw_color_profile_size(handle)), '\0');
    const bool isRead =
        !profile.isEmpty() && heif_image_handle_get_raw_color_profile(handle, profile.data()).code == heif_error_Ok;
    return isRead ? QColorSpace::fromIccProfile(profile) : QColorSpace();
}

bool isTooLarge(const heif_image_handle* handle) {
    const qint64 pixels = qint64{heif_image_handle_get_width(handle)} * heif_image_handle_get_height(handle);
    return pixels * 4 > qint64{kLargestPicture} * 1024 * 1024;
}

QImage heicPicture(const QByteArray& bytes) {
    const std::unique_ptr<heif_context, void (*)(heif_context*)> context(heif_context_alloc(), &heif_context_free);
    const heif_error opened = heif_context_read_from_memory_without_copy(context.get(), bytes.constData(),
                                                                         static_cast<size_t>(bytes.size()), nullptr);
    heif_image_handle* primary = nullptr;
    if (opened.code != heif_error_Ok ||
        heif_context_get_primary_image_handle(context.get(), &primary).code != heif_error_Ok) {
        return {};
    }
    const HeifPointer<heif_image_handle> handle(primary, &heif_image_handle_release);
    heif_image* decoded = nullptr;
    if (isTooLarge(handle.get()) ||
        heif_decode_image(handle.get(), &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr).code !=
            heif_error_Ok) {
        return {};
    }
    const HeifPointer<heif_image> picture(decoded, &heif_image_release);
    QImage copy = copied(picture.get());
    if (const QColorSpace space = colorSpaceOf(handle.get()); space.isValid()) {
        copy.setColorSpace(space);
    }
    return copy;
}

} // namespace

QImage decodedPicture(const QByteArray& bytes) {
    const QImage picture = qtPicture(bytes);
    return picture.isNull() ? heicPicture(bytes) : picture;
}

} // namespace quorvane
