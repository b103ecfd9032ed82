#pragma once

#include <KxUI/Export.h>

#include <QSettings>

namespace Kestrel::UI {

/** The settings store of the library: an INI file of the user, read and written through QSettings.

    The organisation and the application are those the host gave to QCoreApplication; without an
    organisation the file lies under "Kestrel", without an application it is "KxUI". Objects are
    cheap: every object of the same names in the process shares one store. Like QSettings it is
    reentrant and may be used on any thread that owns the object.

    The file is replaced as a whole: a process that ends while it saves leaves what was there. So
    does a disk that is full; but one that becomes full by this very file may cut it short, which
    QSettings does not notice. */
class KXUI_EXPORT AppSettings : public QSettings {
    Q_OBJECT

public:
    /** Opens the store; `parent` owns the object when it is given. */
    explicit AppSettings(QObject* parent = nullptr);
    ~AppSettings() override;
};

} // namespace Kestrel::UI
