#pragma once

#include "snapshots/SystemSnapshot.h"

#include <QByteArray>
#include <QString>

#include <exception>
#include <optional>

namespace quorvane {

/// A snapshot that is kept for good, with the name of the Mac that it was taken on.
struct MasterSystemBaseline {
    static constexpr int kFormatVersion = 1;

    int formatVersion = kFormatVersion; ///< not compared when a file is read: its required keys decide
    QDateTime capturedAt;
    QString deviceName;
    std::optional<QString> label;
    SystemSnapshot snapshot;

    bool operator==(const MasterSystemBaseline&) const = default;
};

/// Where a baseline is kept.
enum class BaselinePlace { ICloud, HomeFolder };

/// @param label  the snapshot's own when it is none
MasterSystemBaseline masterBaselineOf(const SystemSnapshot& snapshot, const QString& deviceName,
                                      const std::optional<QString>& label);

/// A failure of the store of baselines, in words for people.
class MasterSystemBaselineError : public std::exception {
public:
    enum class Code { writeFailed, readFailed };

    MasterSystemBaselineError(Code code, const QString& text);

    Code code() const { return m_code; }
    QString message() const { return QString::fromUtf8(m_text); }
    const char* what() const noexcept override { return m_text.constData(); }

private:
    Code m_code;
    QByteArray m_text;
};

/// The bytes of a baseline's file, keys sorted. Throws EncodingError for a date that no file can hold.
QByteArray encodeMasterBaseline(const MasterSystemBaseline& baseline);
/// All keys but "label" are required. Throws MasterSystemBaselineError, readFailed.
MasterSystemBaseline decodeMasterBaseline(const QByteArray& bytes);

/// "master-baseline-2026-11-15T21:05:37Z.json". Two captures within a second share it.
QString masterBaselineArchiveName(const MasterSystemBaseline& baseline);

} // namespace quorvane
