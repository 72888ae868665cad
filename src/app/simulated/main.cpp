// The window, on the simulated Mac of its user.

#include "app/QuorvaneApp.h"
#include "app/simulated/SimulatedProgramHost.h"

int main(int argumentCount, char** arguments) {
    return quorvane::QuorvaneApp(argumentCount, arguments).run(&quorvane::SimulatedProgramHost::make);
}
