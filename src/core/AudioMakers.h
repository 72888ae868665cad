#pragma once

#include <QList>
#include <QString>

namespace quorvane {

/// Who makes audio interfaces, controllers, instruments, effects, workstations or their licence services.
struct AudioMaker {
    QString
        prefix; ///< of their bundle identifiers, in lower case, without the dot that follows: "com.native-instruments"
    QString maker;
};

const QList<AudioMaker>& audioMakers();

/// True when an identifier in the text (a label, a file name, a path, or several of them) is one of a maker's, in any case.
/// A prefix ends where a component of the identifier does: "com.avidxchange.agent" is not Avid's.
bool isOfAudioMaker(const QString& text);

} // namespace quorvane
