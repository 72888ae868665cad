#include "simulator/Journal.h"

#include "simulator/Json.h"

#include <QFile>

#include <cmath>
#include <stdexcept>
#include <utility>

namespace macsim {

Journal::Journal(QStringList hostFiles)
    : m_hostFiles(std::move(hostFiles)) {
    m_hostFiles.removeAll(QString());
}

void Journal::recordCommand(Actor actor, const QStringList& arguments, int status,
                            std::chrono::duration<double, std::milli> duration) const {
    Json record;
    record["user"] = actor == Actor::Root ? "root" : "user";
    record["arguments"] = Json::array();
    for (const QString& argument : arguments) {
        record["arguments"].push_back(argument.toStdString());
    }
    record["status"] = status;
    record["milliseconds"] = std::round(duration.count() * 100) / 100;
    append(QByteArray::fromStdString(record.dump()));
}

void Journal::recordAuthorization(const QString& prompt, Authorization answer) const {
    Json record;
    record["authorization"] = authorizationName(answer);
    record["prompt"] = prompt.toStdString();
    append(QByteArray::fromStdString(record.dump()));
}

void Journal::recordAutomation(const QString& application, AutomationAnswer answer, std::chrono::seconds limit) const {
    Json record;
    record["automation"] = application.toStdString();
    record["answer"] = automationAnswerName(answer);
    record["seconds"] = limit.count();
    append(QByteArray::fromStdString(record.dump()));
}

void Journal::recordDialog(const QString& tool) const {
    Json record;
    record["dialog"] = tool.toStdString();
    append(QByteArray::fromStdString(record.dump()));
}

void Journal::append(const QByteArray& line) const {
    for (const QString& path : m_hostFiles) {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
            throw std::runtime_error("cannot write the journal " + path.toStdString());
        }
        file.write(line + '\n');
    }
}

} // namespace macsim
