#pragma once

#include "actions/Launch.h"
#include "appearance/AppearanceManager.h"
#include "fakes/ManualSystemLook.h"
#include "fakes/RecordingAppearance.h"
#include "fakes/WindowActions.h"

namespace quorvane {

/// A session whose window comes and goes.
class LaunchedWindow : public WindowActions {
protected:
    void appearAndPaint() {
        launch.windowAppeared();
        launch.windowPainted();
    }
    void TearDown() override {
        launch.windowClosed();
        WindowActions::TearDown();
    }

    RecordingAppearance look;
    ManualSystemLook systemLook;
    AppearanceManager appearance{look, systemLook, defaults};
    Launch launch{{*session, clock, appearance, *lock, window}};
};

} // namespace quorvane
