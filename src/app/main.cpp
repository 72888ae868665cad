// The window, on the host of the platform.

#include "app/QuorvaneApp.h"

int main(int argumentCount, char** arguments) {
    return quorvane::QuorvaneApp(argumentCount, arguments).run();
}
