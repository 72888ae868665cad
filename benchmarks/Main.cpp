// Prints ratios of times in one run, never a verdict on the speed of this machine; fails when one is out of proportion.

#include "RatioReporter.h"

#include <QGuiApplication>

#include <cstdlib>

int main(int argumentCount, char** arguments) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen"); // text is painted without a display
    }
    const QGuiApplication application(argumentCount, arguments);
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return EXIT_FAILURE;
    }
    quorvane::RatioReporter reporter({{"composeLabel", "decodeScaleAndEncode", 1.5},
                                      {"sampleCornerOfLargeDisplay", "sampleCornerOfDisplay", 1.5},
                                      {"scanOverAThousandProfiles", "scanOverTenProfiles", 1.5}},
                                     {{"convertManual/", 14.6}}); // its longer text fits into no cache
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.reportRatios() ? EXIT_SUCCESS : EXIT_FAILURE;
}
