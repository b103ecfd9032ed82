#pragma once

#include <KxUI/Export.h>

#include <QObject>

#include <memory>

class QWidget;

namespace Kestrel::UI {

class IParameter;

/** Ties a widget to a parameter: shows the parameter's value and state, writes what the user edits,
    and brackets it by IParameter::beginEdit() and endEdit().

    The widget is any one whose user property is its value and that tells edits by editStarted(),
    valueEdited() and editFinished(bool), as the value widgets here do. Its properties `minimum`,
    `maximum` and `defaultValue` follow the parameter where they are of the value's type, and so do
    its enabled state and, if it has none, its accessible name.

    The parameter's value always wins: after every edit it is read back. A value that it refuses
    flashes a frame around the widget, which shows the parameter's again. Several widgets on one
    parameter show each other's edits while they are made.

    A child of the widget; ends quietly when the parameter goes away. Interface thread. */
class KXUI_EXPORT ParameterBinding : public QObject {
    Q_OBJECT

public:
    /** Binds the widget to the parameter, which is borrowed, and to no other any more; reads it at
        once. Null for a null widget, a null parameter, which only unbinds, and, with a warning, a
        widget that is none of the kind. */
    static ParameterBinding* bind(QWidget* widget, IParameter* parameter);

    ~ParameterBinding() override;

    /** Which it belongs to. */
    QWidget* widget() const;
    /** Null where it is gone. */
    IParameter* parameter() const;

public Q_SLOTS:
    /** Reads the parameter again, for hosts that do not tell. */
    void refresh();
    /** Takes the user's edit back: for a host whose history was changed meanwhile. */
    void cancelEdit();

Q_SIGNALS:
    /** The parameter refused what the user chose; the widget shows the parameter's value again. */
    void refused();

private Q_SLOTS:
    void finish(bool accepted);

private:
    struct Private;

    ParameterBinding(QWidget* widget, IParameter* parameter);

    const std::unique_ptr<Private> m;
};

} // namespace Kestrel::UI
