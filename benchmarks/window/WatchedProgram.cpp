// The program, which tells when it is seen first.

#include "FirstPaint.h"
#include "app/QuorvaneApp.h"
#include "app/simulated/SimulatedProgramHost.h"

int main(int argumentCount, char** arguments) {
    quorvane::QuorvaneApp application(argumentCount, arguments);
    const quorvane::FirstPaint firstPaint(quorvane::printTimeOfDisplay);
    return application.run(&quorvane::SimulatedProgramHost::make);
}
