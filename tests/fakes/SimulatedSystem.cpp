#include "fakes/SimulatedSystem.h"

namespace quorvane {

QByteArray projectFile(const QString& path) {
    QFile file(QStringLiteral(QUORVANE_SOURCE_DIR "/") + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

UnifiedProfile exampleProfile(const QString& name) {
    return decodeProfile(projectFile(u"examples/profiles/"_s + name + u".json"_s));
}

SimulatedSystem::SimulatedSystem(const QString& description) {
    const QString file = QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/") + description + u".json"_s;
    macsim::createMac(macFolder(), macsim::macDescriptionFromFile(file), macsim::simulatorTools().keys(), program());
    start();
}

SimulatedSystem::~SimulatedSystem() = default;

QString SimulatedSystem::program() {
    return QStringLiteral(MACSIM_PROGRAM);
}

QString SimulatedSystem::macFolder() const {
    return folder.path() + u"/Mac"_s;
}

void SimulatedSystem::start(const QByteArray& faults) {
    system.reset();
    host.reset();
    SimulatedHostOptions options{program(), {}, {}};
    if (!faults.isEmpty()) {
        options.faultsFile = folder.path() + u"/faults.json"_s;
        QFile file(options.faultsFile);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(faults);
    }
    host = std::make_unique<SimulatedHost>(macFolder(), authorization, options);
    system = std::make_unique<SystemManager>(host->host(), notifications);
}

bool SimulatedSystem::apply(const UnifiedProfile& profile) {
    return QCoro::waitFor(system->applyProfile(profile));
}

QString SimulatedSystem::log() const {
    return system->logMessages().join(u'\n') + u'\n';
}

macsim::MacPicture SimulatedSystem::picture() const {
    return macsim::MacPicture(macFolder());
}

macsim::Volume SimulatedSystem::volume(macsim::Actor actor) const {
    return host->mac().volume(actor);
}

CommandResult SimulatedSystem::run(const QStringList& arguments) {
    return QCoro::waitFor(system->runCommand(arguments, OutputCapture::Capture));
}

QString SimulatedSystem::shell(const QString& line) {
    return run({u"/bin/sh"_s, u"-c"_s, line}).standardOutput;
}

} // namespace quorvane
