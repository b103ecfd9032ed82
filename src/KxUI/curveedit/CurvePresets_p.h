#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace Kestrel::UI {

/** A curve on the unit square that users begin with. A plain value. */
struct CurvePreset {
    QString name;
    /** What CurveModel::load() reads: "(0, 0), (0.5, 0.6), (1, 1)". */
    QByteArray text;
};

/** Those that come with the library, named in the language of the moment. */
std::vector<CurvePreset> builtInCurvePresets();

/** Those of the files `*.curve` in a folder, named and sorted by the files. Files that are no curve
    are left out, as are those of more than 64 KiB, and all after the first 500. Waits for the disk,
    so it is for other threads; may be called from any. */
std::vector<CurvePreset> curvePresetsIn(const QString& folder);

/** The longest name of a preset that is kept in the settings. */
constexpr int LongestPresetName = 64;

/** Those that the user saved, as the settings have them, sorted by name. Interface thread, as the
    next two. */
std::vector<CurvePreset> savedCurvePresets();
/** Keeps a preset, in place of one of that name. False for a name without a letter, and for what is
    no curve. */
bool saveCurvePreset(const QString& name, const QByteArray& text);
/** Nothing where there is none. */
void removeCurvePreset(const QString& name);

/** The presets of a folder, read on another thread each time that they are wanted; nobody waits for
    it. Interface thread. */
class CurvePresetFolder {
public:
    CurvePresetFolder();
    ~CurvePresetFolder();
    Q_DISABLE_COPY_MOVE(CurvePresetFolder)

    QString folder() const { return m_folder; }
    /** Forgets what was read from another one. None where it is empty. */
    void setFolder(const QString& folder);

    /** Those that were read last. */
    const std::vector<CurvePreset>& presets() const { return m_presets; }

    /** Reads them again, unless that goes on, and calls `changed` where they are other ones. */
    void refresh(std::function<void()> changed);

private:
    struct Shared;

    void take(const QString& folder, std::vector<CurvePreset> presets);

    const std::shared_ptr<Shared> m_shared;
    QString m_folder;
    std::vector<CurvePreset> m_presets;
    std::function<void()> m_changed;
    QString m_reading; ///< the folder that a thread is at; null without one
    QObject m_mailbox; ///< takes with it what nobody wants any more
};

} // namespace Kestrel::UI
