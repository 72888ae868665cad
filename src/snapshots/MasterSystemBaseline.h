#pragma once

#include "snapshots/SystemSnapshot.h"

#include <QByteArray>
#include <QString>

#include <exception>
#include <optional>

namespace quorvane {

/// A snapshot that is kept for good, with the Mac that it was taken on.
struct MasterSystemBaseline {
    static constexpr int kFormatVersion = 1;

    int formatVersion = kFormatVersion; ///< not compared when a file is read: its required keys decide
    QDateTime capturedAt;
    QString deviceName;
    std::optional<QString> deviceId; ///< none in files that were written before there was one
    std::optional<QString> label;
    SystemSnapshot snapshot;

    bool operator==(const MasterSystemBaseline&) const = default;
};

/// Where a baseline is kept.
enum class BaselinePlace { ICloud, HomeFolder };

/// The Mac that the program runs on.
struct MacIdentity {
    QString name;              ///< see core/DeviceName
    std::optional<QString> id; ///< none where it can't be told
};

/// @param label  the snapshot's own when it is none
MasterSystemBaseline masterBaselineOf(const SystemSnapshot& snapshot, const MacIdentity& mac,
                                      const std::optional<QString>& label);

/// Whether a baseline was saved on this Mac. Ids decide where both are known: two Macs can have one name, and a Mac can be
/// renamed. Else the name does.
enum class BaselineOrigin { ThisMac, SameName, AnotherMac };
BaselineOrigin originOf(const MasterSystemBaseline& baseline, const MacIdentity& mac);

/// The baseline that serves a Mac.
struct LatestBaseline {
    MasterSystemBaseline baseline;
    BaselinePlace place = BaselinePlace::HomeFolder;
    bool isAnotherMacs = false;

    bool operator==(const LatestBaseline&) const = default;
};

/// ICloud's, unless it was saved on another Mac, or nothing but the name says that it wasn't: all Macs of the user write it.
/// Then the one at home goes first. Another Mac's serves where there is none of this one's own, at home before in iCloud.
std::optional<LatestBaseline> latestBaseline(const std::optional<MasterSystemBaseline>& inCloud,
                                             const std::optional<MasterSystemBaseline>& atHome, const MacIdentity& mac);

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
/// All keys but "deviceId" and "label" are required. Throws MasterSystemBaselineError, readFailed.
MasterSystemBaseline decodeMasterBaseline(const QByteArray& bytes);

/// "master-baseline-2026-11-15T21:05:37Z.json". Two captures within a second share it.
QString masterBaselineArchiveName(const MasterSystemBaseline& baseline);
/// True for such a name, and for that of the current file.
bool isMasterBaselineName(const QString& name);

} // namespace quorvane
