#include "platform/portable/PictureDecoder.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QLibrary>

#include <algorithm>
#include <libheif/heif.h>
#include <memory>
#include <mutex>

namespace quorvane {

namespace {

constexpr int kLargestPicture = 1024; // MiB of pixels; Qt's own limit keeps out a picture of 6016 by 6016

/// What is used of libheif. With its codecs it is larger than the rest of the program and slow to load, and few pictures
/// are of its kind: it is loaded when one is read.
class Heif {
    static constexpr int kVersion = 1;
    QLibrary m_library{QStringLiteral("heif"), kVersion};
    bool m_isWhole = true;

public:
    /// Null where the library isn't there, or is another one. Any thread.
    static const Heif* loaded() {
        static const Heif heif;
        return heif.m_isWhole ? &heif : nullptr;
    }

    decltype(&heif_context_alloc) makeContext = resolve<decltype(makeContext)>("heif_context_alloc");
    decltype(&heif_context_free) freeContext = resolve<decltype(freeContext)>("heif_context_free");
    decltype(&heif_context_read_from_memory_without_copy) read =
        resolve<decltype(read)>("heif_context_read_from_memory_without_copy");
    decltype(&heif_context_get_primary_image_handle) primaryHandle =
        resolve<decltype(primaryHandle)>("heif_context_get_primary_image_handle");
    decltype(&heif_image_handle_release) releaseHandle = resolve<decltype(releaseHandle)>("heif_image_handle_release");
    decltype(&heif_image_handle_get_width) handleWidth = resolve<decltype(handleWidth)>("heif_image_handle_get_width");
    decltype(&heif_image_handle_get_height) handleHeight =
        resolve<decltype(handleHeight)>("heif_image_handle_get_height");
    decltype(&heif_image_handle_get_raw_color_profile_size) colorProfileSize =
        resolve<decltype(colorProfileSize)>("heif_image_handle_get_raw_color_profile_size");
    decltype(&heif_image_handle_get_raw_color_profile) colorProfile =
        resolve<decltype(colorProfile)>("heif_image_handle_get_raw_color_profile");
    decltype(&heif_decode_image) decode = resolve<decltype(decode)>("heif_decode_image");
    decltype(&heif_image_release) releaseImage = resolve<decltype(releaseImage)>("heif_image_release");
    decltype(&heif_image_get_plane_readonly) plane = resolve<decltype(plane)>("heif_image_get_plane_readonly");
    decltype(&heif_image_get_width) imageWidth = resolve<decltype(imageWidth)>("heif_image_get_width");
    decltype(&heif_image_get_height) imageHeight = resolve<decltype(imageHeight)>("heif_image_get_height");

private:
    Heif() = default;

    template <typename Function>
    Function resolve(const char* name) {
        const QFunctionPointer found = m_library.resolve(name);
        m_isWhole = m_isWhole && found != nullptr;
        return reinterpret_cast<Function>(found);
    }
};

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
QImage copied(const Heif& heif, const heif_image* picture) {
    int stride = 0;
    const uint8_t* pixels = heif.plane(picture, heif_channel_interleaved, &stride);
    if (pixels == nullptr) {
        return {};
    }
    return QImage(pixels, heif.imageWidth(picture, heif_channel_interleaved),
                  heif.imageHeight(picture, heif_channel_interleaved), stride, QImage::Format_RGBA8888)
        .copy();
}

/// The colours of a HEIC picture are mostly those of a wide space.
QColorSpace colorSpaceOf(const Heif& heif, const heif_image_handle* handle) {
    QByteArray profile(static_cast<qsizetype>(heif.colorProfileSize(handle)), '\0');
    const bool isRead = !profile.isEmpty() && heif.colorProfile(handle, profile.data()).code == heif_error_Ok;
    return isRead ? QColorSpace::fromIccProfile(profile) : QColorSpace();
}

bool isTooLarge(const Heif& heif, const heif_image_handle* handle) {
    const qint64 pixels = qint64{heif.handleWidth(handle)} * heif.handleHeight(handle);
    return pixels * 4 > qint64{kLargestPicture} * 1024 * 1024;
}

QImage heicPicture(const Heif& heif, const QByteArray& bytes) {
    const std::unique_ptr<heif_context, void (*)(heif_context*)> context(heif.makeContext(), heif.freeContext);
    const heif_error opened = heif.read(context.get(), bytes.constData(), static_cast<size_t>(bytes.size()), nullptr);
    heif_image_handle* primary = nullptr;
    if (opened.code != heif_error_Ok || heif.primaryHandle(context.get(), &primary).code != heif_error_Ok) {
        return {};
    }
    const HeifPointer<heif_image_handle> handle(primary, heif.releaseHandle);
    heif_image* decoded = nullptr;
    if (isTooLarge(heif, handle.get()) ||
        heif.decode(handle.get(), &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr).code !=
            heif_error_Ok) {
        return {};
    }
    const HeifPointer<heif_image> picture(decoded, heif.releaseImage);
    QImage copy = copied(heif, picture.get());
    if (const QColorSpace space = colorSpaceOf(heif, handle.get()); space.isValid()) {
        copy.setColorSpace(space);
    }
    return copy;
}

/// By the mark of its container, which other kinds have, too.
bool mayBeHeic(const QByteArray& bytes) {
    return QByteArrayView(bytes).sliced(std::min<qsizetype>(4, bytes.size())).startsWith("ftyp");
}

} // namespace

QImage decodedPicture(const QByteArray& bytes) {
    const QImage picture = qtPicture(bytes);
    if (!picture.isNull() || !mayBeHeic(bytes)) {
        return picture;
    }
    const Heif* const heif = Heif::loaded();
    return heif != nullptr ? heicPicture(*heif, bytes) : QImage();
}

} // namespace quorvane
