// Displays come, go, are numbered anew and of another size, their users choose pictures and go to other Spaces, names change
// and changes fail: in the end each Space of each display has the picture that its user chose last, and meanwhile what is
// drawn of a label is what was composed last. What a display is, only its user knows; the program sees numbers.

#include "fakes/WallpaperSystem.h"

#include <algorithm>
#include <functional>
#include <random>
#include <utility>

namespace quorvane {

namespace {

/// What a Space shows that isn't visible.
struct HiddenSpace {
    std::optional<QString> picture;
    QString chosen; ///< by its user, last
};

/// A display on somebody's desk, with two Spaces. It keeps what it shows while it is unplugged.
struct Monitor {
    MemoryDisplays::Connected state;
    QString chosen; ///< by its user, last
    HiddenSpace hidden;
    bool isConnected = true;
};

/// What the program can know of the displays.
enum class Knowledge {
    OneModel,  ///< all bear one name and size, and the system tells of each change
    OwnModels, ///< each bears its own name, and the system may keep quiet
};

const struct {
    QString name;
    QColor color;
} kChoices[] = {{u"red.png"_s, QColor(200, 0, 0)},
                {u"green.png"_s, QColor(0, 160, 0)},
                {u"blue.png"_s, QColor(0, 0, 200)},
                {u"gold.png"_s, QColor(220, 180, 0)},
                {u"grey.png"_s, QColor(120, 120, 120)}};

bool areAlike(const QColor& one, const QColor& other) {
    return std::abs(one.red() - other.red()) + std::abs(one.green() - other.green()) +
               std::abs(one.blue() - other.blue()) <
           60;
}

/// One desk, and a random story of what happens on it.
class WallpaperDesk : public WallpaperSystem {
protected:
    void prepare(quint64 seed, Knowledge knowledge) {
        m_random.seed(seed);
        m_knowledge = knowledge;
        story.clear();
        overlay.reset();
        for (const QString& name : workFiles()) {
            files.removeAsRoot(kWallpaperFolder + name);
        }
        defaults.values.clear();
        displays.forgetWhatWasDrawn();
        for (const auto& [name, color] : kChoices) {
            addPicture(name, color);
        }
        monitors.clear();
        for (quint32 number = 1; number <= 3; ++number) {
            const QString model = knowledge == Knowledge::OneModel ? u"Monitor"_s : u"Monitor %1"_s.arg(number);
            const QString picture = kPictures + kChoices[number - 1].name;
            const QString another = kPictures + kChoices[number].name;
            monitors.push_back(
                {{{number, model, {0, 0, 48, 96}, 1}, picture, std::nullopt}, picture, {another, another}});
        }
        connectMonitors();
        start();
        enable(u"Live"_s);
    }

    void live() {
        const int fault = below(10);
        if (fault < 4) {
            const int number = fault * 2 + 1 + below(2);
            note(u"  change %1 of a file fails"_s.arg(number));
            files.failAtChange(number);
        } else if (fault == 4) {
            Monitor& refusing = anyMonitor();
            note(u"  %1 refuses every picture"_s.arg(nameOf(refusing)));
            refusing.state.settingError = u"It is locked."_s;
        }
        happen();
        readMonitors();
        expectToBeDrawnAsComposed();
        files.failAtChange(0);
        for (Monitor& monitor : monitors) {
            if (below(3) > 0) {
                monitor.state.settingError.reset();
            }
        }
    }

    /// All displays are there, nothing fails, and the system tells so.
    void comeTogether() {
        for (Monitor& monitor : monitors) {
            monitor.state.settingError.reset();
            if (!monitor.isConnected) {
                plugIn(monitor);
            }
        }
        connectMonitors();
        tellOfChange();
        readMonitors();
    }

    void expectLabelsOfWhatWasChosen() {
        enable(u"End"_s);
        readMonitors();
        onEachSpace([this](const Monitor& monitor) {
            EXPECT_TRUE(areAlike(colorShown(monitor), colorOf(monitor.chosen))) << nameOf(monitor).toStdString();
            EXPECT_TRUE(monitor.state.picture->startsWith(kWallpaperFolder)) << nameOf(monitor).toStdString();
            EXPECT_TRUE(overlay->isOverlayInPlace());
        });
        expectToBeDrawnAsComposed();
    }

    void expectWhatWasChosen() {
        disable();
        readMonitors();
        onEachSpace([this](const Monitor& monitor) {
            EXPECT_EQ(monitor.state.picture->toStdString(), monitor.chosen.toStdString())
                << nameOf(monitor).toStdString();
        });
    }

    /// The user's files are gone meanwhile: the copies are what there is.
    void expectCopiesOfWhatWasChosen() {
        for (const auto& [name, color] : kChoices) {
            files.removeAsRoot(kPictures + name);
        }
        disable();
        readMonitors();
        onEachSpace([this](const Monitor& monitor) {
            EXPECT_TRUE(areAlike(colorShown(monitor), colorOf(monitor.chosen))) << nameOf(monitor).toStdString();
        });
    }

    int below(int bound) { return static_cast<int>(m_random() % static_cast<quint64>(bound)); }

    QStringList story;
    std::vector<Monitor> monitors;

private:
    void happen() {
        switch (below(15)) {
        case 0:
        case 1:
        case 2:
            plugOrUnplug(anyMonitor());
            break;
        case 3:
        case 4:
            renumber();
            break;
        case 5:
        case 6:
            chooseAnother(anyMonitor());
            break;
        case 7:
            showWhatAnotherShows();
            break;
        case 8:
        case 9:
            showName();
            break;
        case 10:
            takeAway();
            break;
        case 11:
        case 12:
            goToTheOtherSpace(anyMonitor());
            break;
        case 13:
            resize(anyMonitor());
            break;
        default:
            startAnew();
        }
    }

    /// The system always tells of it.
    void goToTheOtherSpace(Monitor& monitor) {
        if (!monitor.isConnected) {
            return;
        }
        note(u"%1 shows its other Space"_s.arg(nameOf(monitor)));
        std::swap(monitor.state.picture, monitor.hidden.picture);
        std::swap(monitor.chosen, monitor.hidden.chosen);
        connectMonitors();
        tell(DesktopChange::Space);
    }

    void onEachSpace(const std::function<void(const Monitor& monitor)>& look) {
        for (int space = 1; space <= 2; ++space) {
            for (Monitor& monitor : monitors) {
                look(monitor);
                goToTheOtherSpace(monitor);
                readMonitors();
            }
        }
    }

    /// It is then another display, as far as the program can tell.
    void resize(Monitor& monitor) {
        if (monitor.isConnected) {
            monitor.state.display.frame.setWidth(monitor.state.display.frame.width() == 48 ? 64 : 48);
            note(u"%1 is %2 wide"_s.arg(nameOf(monitor)).arg(monitor.state.display.frame.width()));
            connectMonitors();
            tell(DesktopChange::Other);
        }
    }

    /// A label that stands for another is drawn in its place.
    void expectToBeDrawnAsComposed() {
        for (const Monitor& monitor : monitors) {
            const QString path = monitor.state.picture.value_or(QString());
            if (monitor.isConnected && path.startsWith(kWallpaperFolder) && files.exists(path)) {
                EXPECT_EQ(displays.drawnOn(monitor.state), files.read(path)) << nameOf(monitor).toStdString();
            }
        }
    }

    void plugOrUnplug(Monitor& monitor) {
        if (monitor.isConnected) {
            note(u"%1 is unplugged"_s.arg(nameOf(monitor)));
            monitor.isConnected = false;
        } else {
            plugIn(monitor);
        }
        connectMonitors();
        maybeTell();
    }

    void plugIn(Monitor& monitor) {
        QList<quint32> free{1, 2, 3};
        for (const Monitor& each : monitors) {
            if (each.isConnected) {
                free.removeAll(*each.state.display.number);
            }
        }
        monitor.state.display.number = free[below(static_cast<int>(free.size()))];
        monitor.isConnected = true;
        note(u"%1 is plugged in as %2"_s.arg(nameOf(monitor)).arg(*monitor.state.display.number));
    }

    void renumber() {
        std::vector<quint32> numbers{1, 2, 3};
        std::shuffle(numbers.begin(), numbers.end(), m_random);
        for (Monitor& monitor : monitors) {
            if (monitor.isConnected) {
                monitor.state.display.number = numbers.back();
                numbers.pop_back();
                note(u"%1 is now %2"_s.arg(nameOf(monitor)).arg(*monitor.state.display.number));
            }
        }
        connectMonitors();
        maybeTell();
    }

    void chooseAnother(Monitor& monitor) {
        if (monitor.isConnected) {
            monitor.chosen = kPictures + kChoices[below(5)].name;
            monitor.state.picture = monitor.chosen;
            note(u"%1 is given %2"_s.arg(nameOf(monitor), monitor.chosen));
            connectMonitors();
            maybeTell();
        }
    }

    void showWhatAnotherShows() {
        Monitor& one = anyMonitor();
        Monitor& other = anyMonitor();
        if (one.isConnected && other.isConnected) {
            one.state.picture = other.state.picture;
            one.chosen = other.chosen;
            note(u"%1 is given what %2 shows"_s.arg(nameOf(one), nameOf(other)));
            connectMonitors();
            tellOfChange();
        }
    }

    void showName() {
        const QString name = QStringList{u"Live"_s, u"Show 1"_s, u"Show (1)"_s, u"Club"_s}[below(4)];
        note(u"\"%1\" is shown"_s.arg(name));
        connectMonitors();
        below(2) == 0 ? update(name) : enable(name);
    }

    void takeAway() {
        note(u"the label is taken away"_s);
        connectMonitors();
        below(2) == 0 ? disable() : refresh(u"Default"_s);
    }

    void startAnew() {
        note(u"the program is started anew"_s);
        connectMonitors();
        overlay.reset();
        start();
        atStart({});
    }

    void maybeTell() {
        if (m_knowledge == Knowledge::OneModel || below(2) == 0) {
            tellOfChange();
        } else {
            note(u"  the system keeps quiet"_s);
        }
    }

    void connectMonitors() {
        displays.connected.clear();
        for (const Monitor& monitor : monitors) {
            if (monitor.isConnected) {
                displays.connected.append(monitor.state);
            }
        }
    }

    void readMonitors() {
        qsizetype at = 0;
        for (Monitor& monitor : monitors) {
            if (monitor.isConnected) {
                monitor.state.picture = displays.connected[at++].picture;
            }
        }
    }

    Monitor& anyMonitor() { return monitors[static_cast<size_t>(below(static_cast<int>(monitors.size())))]; }
    QString nameOf(const Monitor& monitor) const {
        return QStringList{u"A"_s, u"B"_s, u"C"_s}[&monitor - monitors.data()];
    }
    void note(const QString& line) { story.append(line); }

    static QColor colorOf(const QString& chosen) {
        for (const auto& [name, color] : kChoices) {
            if (chosen.endsWith(name)) {
                return color;
            }
        }
        return {};
    }
    /// Below the label.
    QColor colorShown(const Monitor& monitor) const {
        if (!files.exists(*monitor.state.picture)) {
            return {};
        }
        const QImage picture = QImage::fromData(displays.drawnOn(monitor.state));
        return picture.pixelColor(picture.width() / 2, picture.height() - 3);
    }

    std::mt19937_64 m_random;
    Knowledge m_knowledge = Knowledge::OneModel;
};

class WallpaperProperty : public WallpaperDesk, public ::testing::WithParamInterface<Knowledge> {};

} // namespace

TEST_P(WallpaperProperty, eachDisplayHasWhatItsUserChoseLast) {
    for (quint64 seed = 1; seed <= 25; ++seed) {
        prepare(seed, GetParam());
        for (int event = 0; event < 16; ++event) {
            live();
        }
        comeTogether();
        if (below(2) == 0) {
            expectWhatWasChosen();
        } else {
            expectLabelsOfWhatWasChosen();
            below(2) == 0 ? expectWhatWasChosen() : expectCopiesOfWhatWasChosen();
        }
        ASSERT_FALSE(HasFailure()) << "seed " << seed << "\n" << story.join(u'\n').toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Desks, WallpaperProperty, ::testing::Values(Knowledge::OneModel, Knowledge::OwnModels),
                         [](const auto& desk) {
                             return desk.param == Knowledge::OneModel ? "ofOneModel" : "ofTheirOwnModels";
                         });

} // namespace quorvane
