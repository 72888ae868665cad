// What the label costs beyond what any copy of the picture costs.

#include "platform/portable/PictureDecoder.h"
#include "wallpaper/WallpaperLabel.h"

#include <QPainter>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>

namespace quorvane {

namespace {

using namespace Qt::StringLiterals;

constexpr QSize kCanvas(6016, 3384);
constexpr int kWallpaperRepetitions = 5;

/// A JPEG file as large as those that come with a Mac, with some detail everywhere.
const QByteArray& picture() {
    static const QByteArray file = [] {
        QImage image(6016, 6016, QImage::Format_RGB32);
        QLinearGradient sky(0, 0, 6016, 6016);
        sky.setColorAt(0, Qt::darkBlue);
        sky.setColorAt(1, Qt::darkRed);
        QPainter painter(&image);
        painter.fillRect(image.rect(), sky);
        QRandomGenerator random(1);
        for (int i = 0; i < 4000; ++i) {
            painter.fillRect(random.bounded(6016), random.bounded(6016), 60, 40, QColor::fromRgb(random.generate()));
        }
        return jpegFile(image);
    }();
    return file;
}

void decodeScaleAndEncode(benchmark::State& state) {
    for (auto _ : state) {
        const QImage scaled =
            decodedPicture(picture()).scaled(kCanvas, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        benchmark::DoNotOptimize(jpegFile(scaled));
    }
}

void composeLabel(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(jpegFile(labelledPicture(decodedPicture(picture()), u"Late Night Set"_s, kCanvas)));
    }
}

void sampleCorner(benchmark::State& state, const QSize& canvas) {
    QImage image(canvas, QImage::Format_RGB32);
    image.fill(Qt::darkBlue);
    for (auto _ : state) {
        benchmark::DoNotOptimize(cornerBrightness(image));
    }
}

/// The corner is as large as it gets.
void sampleCornerOfDisplay(benchmark::State& state) {
    sampleCorner(state, {2560, 2400});
}

void sampleCornerOfLargeDisplay(benchmark::State& state) {
    sampleCorner(state, {10240, 9600});
}

BENCHMARK(decodeScaleAndEncode)->Repetitions(kWallpaperRepetitions)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(composeLabel)->Repetitions(kWallpaperRepetitions)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(sampleCornerOfDisplay)->Repetitions(kWallpaperRepetitions)->Unit(benchmark::kMicrosecond);
BENCHMARK(sampleCornerOfLargeDisplay)->Repetitions(kWallpaperRepetitions)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace quorvane
