#pragma once

#include "fakes/WindowOnMac.h"
#include "flows/FlowRecord.h"
#include "platform/ColorScheme.h"

#include <iosfwd>

class QImage;

namespace quorvane {

class WindowPicture;

/// What the window is seen in.
struct PicturedState {
    QString name;                          ///< of the pictures' files
    void (*bring)(WindowPicture& picture); ///< as a user does, from before the launch
    QString mac = u"fresh-macbook"_s;
};
void PrintTo(const PicturedState& state, std::ostream* out);

/// Brings the window into a state on a real display, and saves a picture of all that is seen of the program, in light and in
/// dark, into the folder that the environment names. Nothing moves: it would be different in each picture.
class WindowPicture : public WindowOnMac, public ::testing::WithParamInterface<PicturedState> {
public:
    static QList<PicturedState> states();

protected:
    WindowPicture();

    // ---- What several states begin with

    void launchWithProfiles();
    void saveManyProfiles(int count);
    /// @param liveSet  what of it the Mac has: App Nap, AirDrop and Siri
    void launchInForce(const UnifiedProfile& liveSet);
    void launchLocked();
    static void askForFinger();
    void openReview(const QString& profile);
    /// From the review on to its outcome.
    void applyReview();
    void startSnapshotThatHangs();
    static void showLogs();
    /// With the menu of earlier runs open.
    void openRuns();
    /// Of those in the menu.
    void chooseOldestRun();
    static void showTab(const QString& name);
    /// The end of the page.
    static void scrollDown();
    static void pressRow(const QString& name);
    void signIn();
    void setState(const char* subject, const macsim::Json& state);
    /// System Events doesn't list it any more; its registration stays.
    void listNoLoginItem(const char* name);
    /// An application registers again what the program had switched off.
    void registerAnew(const QString& label);
    void launchSettings();
    void saveBaselines(int count);
    /// A run has died in this flow, when it was halfway through.
    void cutOff(RecordedFlow flow, const QString& name);
    /// The profile was applied two days ago, and left these as it wanted them.
    void noteLastApply(const UnifiedProfile& profile, const QSet<QString>& held);
    static void openBaselines();
    void showLongLog();
    void showManual(double place);
    static void openTweaks();
    static void openSaveSheet();
    /// @param step  1 to 3
    static void goToWizardStep(int step);
    void openStartup();
    static void searchStartup(const QString& text);
    /// Adds startup items that only a profile knows, and some that this Mac has.
    void loadStartup(const QList<StartupItem>& items);
    void addLaunchAgents(int count);
    /// In the menu bar.
    static void chooseCommand(const QString& title);
    /// As the status item shows it, in the window's corner.
    void popUpMenu();

    void save(ColorScheme scheme);

private:
    static QList<PicturedState> performanceStates();
    static QList<PicturedState> startupStates();
    static QList<PicturedState> pageStates();
    static QList<PicturedState> serviceStates();
    static QList<PicturedState> settingsStates();
    static QList<PicturedState> settingsSheetStates();
    static QList<PicturedState> reviewStates();
    static QList<PicturedState> baselineStates();
    static QList<PicturedState> lockStates();
    static QList<PicturedState> alertStates();
    static QList<PicturedState> dialogStates();

    void setPreference(const QString& domain, const QString& key, const macsim::PropertyList& value);
    void setScheme(ColorScheme scheme);
};

} // namespace quorvane
