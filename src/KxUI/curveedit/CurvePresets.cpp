#include <KxUI/curveedit/CurvePresets_p.h>

#include <KxUI/curveedit/CurveEditor.h>
#include <KxUI/curves/KeyCurve.h>
#include <KxUI/settings/AppSettings.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace Kestrel::UI {

namespace {

constexpr qint64 MostBytes = 64 * 1024;
constexpr int MostFiles = 500;
const char* const SavedKey = "curves/presets";

struct BuiltIn {
    const char* name;
    const char* text;
};

// The power of 1 / 2.2 rises endlessly steep from 0, where eight knots are by 0.02 from it, by 0.012
// from 0.005 on. That of 2.2 is met to 0.0003.
constexpr BuiltIn BuiltIns[] = {
    {QT_TRANSLATE_NOOP("Kestrel::UI::CurveEditor", "Identity"), "(0, 0), (1, 1)"},
    {QT_TRANSLATE_NOOP("Kestrel::UI::CurveEditor", "Invert"), "(0, 1), (1, 0)"},
    {QT_TRANSLATE_NOOP("Kestrel::UI::CurveEditor", "Soft S"),
     "(0, 0), (0.25, 0.19), (0.75, 0.81), (1, 1)"},
    {QT_TRANSLATE_NOOP("Kestrel::UI::CurveEditor", "Strong S"),
     "(0, 0), (0.2, 0.08), (0.5, 0.5), (0.8, 0.92), (1, 1)"},
    {QT_TRANSLATE_NOOP("Kestrel::UI::CurveEditor", "Gamma 2.2"),
     "(0, 0), (0.02658, 0.0003419), (0.2148, 0.03392), (0.4694, 0.1894), (0.8352, 0.6728), "
     "(0.9449, 0.8829), (0.9898, 0.9777), (1, 1)"},
    {QT_TRANSLATE_NOOP("Kestrel::UI::CurveEditor", "Gamma 1/2.2"),
     "(0, 0), (0.003, 0.07132), (0.006, 0.09774), (0.02, 0.1689), (0.08, 0.3173), "
     "(0.25, 0.5325), (0.6, 0.7928), (1, 1)"},
};

bool isBefore(const CurvePreset& preset, const QString& name) {
    const int order = preset.name.compare(name, Qt::CaseInsensitive);
    return order < 0 || (order == 0 && preset.name < name);
}

void store(const std::vector<CurvePreset>& presets) {
    QStringList saved;
    for (const CurvePreset& each : presets)
        saved << each.name << QString::fromUtf8(each.text);
    AppSettings settings;
    if (saved.isEmpty())
        settings.remove(QLatin1String(SavedKey));
    else
        settings.setValue(QLatin1String(SavedKey), saved);
}

bool isCurve(const QByteArray& text) {
    KeyCurve curve;
    return curve.setText({text.constData(), std::size_t(text.size())}) && !curve.isEmpty();
}

} // namespace

std::vector<CurvePreset> builtInCurvePresets() {
    std::vector<CurvePreset> presets;
    for (const BuiltIn& each : BuiltIns)
        presets.push_back({CurveEditor::tr(each.name), each.text});
    return presets;
}

std::vector<CurvePreset> curvePresetsIn(const QString& folder) {
    std::vector<CurvePreset> presets;
    const QStringList files = QDir(folder).entryList({QStringLiteral("*.curve")}, QDir::Files,
                                                     QDir::Name | QDir::IgnoreCase);
    for (const QString& name : files) {
        if (presets.size() == MostFiles)
            break;
        QFile file(QDir(folder).filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        // One byte more tells of a file that is too long, whatever its size was said to be.
        const QByteArray text = file.read(MostBytes + 1);
        if (text.size() <= MostBytes && isCurve(text))
            presets.push_back({QFileInfo(name).completeBaseName(), text});
    }
    return presets;
}

// In pairs of name and text: a name is no key, in which some letters would mean something.
std::vector<CurvePreset> savedCurvePresets() {
    const QStringList saved = AppSettings().value(QLatin1String(SavedKey)).toStringList();
    std::vector<CurvePreset> presets;
    for (int i = 0; i + 1 < saved.size(); i += 2) {
        const QByteArray text = saved[i + 1].toUtf8();
        if (!saved[i].isEmpty() && text.size() <= MostBytes && isCurve(text))
            presets.push_back({saved[i], text});
    }
    return presets;
}

bool saveCurvePreset(const QString& name, const QByteArray& text) {
    const QString kept = name.simplified().left(LongestPresetName).trimmed();
    if (kept.isEmpty() || text.size() > MostBytes || !isCurve(text))
        return false;
    std::vector<CurvePreset> presets = savedCurvePresets();
    const auto place = std::lower_bound(presets.begin(), presets.end(), kept, isBefore);
    if (place != presets.end() && place->name == kept)
        place->text = text;
    else
        presets.insert(place, {kept, text});
    store(presets);
    return true;
}

void removeCurvePreset(const QString& name) {
    std::vector<CurvePreset> presets = savedCurvePresets();
    const auto end = std::remove_if(presets.begin(), presets.end(),
                                    [&](const CurvePreset& each) { return each.name == name; });
    if (end == presets.end())
        return;
    presets.erase(end, presets.end());
    store(presets);
}

struct CurvePresetFolder::Shared {
    std::mutex mutex;
    CurvePresetFolder* owner = nullptr; // null when it is gone
};

CurvePresetFolder::CurvePresetFolder()
    : m_shared(std::make_shared<Shared>()) {
    m_shared->owner = this;
}

CurvePresetFolder::~CurvePresetFolder() {
    const std::lock_guard<std::mutex> guard(m_shared->mutex);
    m_shared->owner = nullptr;
}

void CurvePresetFolder::setFolder(const QString& folder) {
    if (folder == m_folder)
        return;
    m_folder = folder;
    m_presets.clear();
}

void CurvePresetFolder::refresh(std::function<void()> changed) {
    m_changed = std::move(changed);
    // A folder that hangs holds one thread, not one more for each look at the menu.
    if (m_folder.isEmpty() || m_reading == m_folder)
        return;
    const auto read = [shared = m_shared, folder = m_folder] {
        std::vector<CurvePreset> presets = curvePresetsIn(folder);
        const std::lock_guard<std::mutex> guard(shared->mutex);
        if (CurvePresetFolder* owner = shared->owner)
            QMetaObject::invokeMethod(
                &owner->m_mailbox,
                [owner, folder, presets = std::move(presets)]() mutable {
                    owner->take(folder, std::move(presets));
                },
                Qt::QueuedConnection);
    };
    try {
        std::thread(read).detach();
        m_reading = m_folder;
    } catch (const std::system_error&) {
        // A machine without a thread to spare: the next look may find one.
    }
}

void CurvePresetFolder::take(const QString& folder, std::vector<CurvePreset> presets) {
    if (folder == m_reading)
        m_reading.clear();
    if (folder != m_folder)
        return;
    const bool same = std::equal(presets.begin(), presets.end(), m_presets.begin(), m_presets.end(),
                                 [](const CurvePreset& a, const CurvePreset& b) {
                                     return a.name == b.name && a.text == b.text;
                                 });
    if (same)
        return;
    m_presets = std::move(presets);
    const auto changed = m_changed;
    if (changed)
        changed();
}

} // namespace Kestrel::UI
