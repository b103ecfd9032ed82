#pragma once

#include <QColor>
#include <QDropEvent>
#include <QString>
#include <QStyleOption>
#include <QVariant>
#include <QWindow>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#include <QtPlatformHeaders/QXcbWindowFunctions>
#else
#include <QStringDecoder>
#endif

#include <optional>

/** \file
    What Qt 5 and Qt 6 do in different ways: the one place that asks which it is. */

namespace Kestrel::UI {

/** What QColor takes and gives its parts in: double on Qt 5, float on Qt 6. */
using ColorPart = decltype(QColor().redF());

/** The text of `size` bytes of UTF-8, with a byte order mark if it begins with one; null where they
    are not valid to their end. */
inline std::optional<QString> fromStrictUtf8(const char* bytes, int size) {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    static QTextCodec* const utf8 = QTextCodec::codecForName("UTF-8");
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QString text = utf8->toUnicode(bytes, size, &state);
    if (state.invalidChars != 0 || state.remainingChars != 0)
        return {};
#else
    QStringDecoder utf8(QStringDecoder::Utf8,
                        QStringDecoder::Flag::ConvertInitialBom | QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(QByteArrayView(bytes, size));
    if (utf8.hasError())
        return {};
#endif
    return text;
}

/** Tells the window manager of an X11 screen that `window`, which is not shown yet, is like any
    other, whatever its flags say. */
inline void setNormalWindowType(QWindow* window) {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QXcbWindowFunctions::setWmWindowType(window, QXcbWindowFunctions::Normal);
#else
    // Qt 6 has no function for it, but still reads the property whenever flags are set.
    window->setProperty("_q_xcb_wm_window_type", 1);
    const Qt::WindowFlags flags = window->flags();
    window->setFlags(flags ^ Qt::WindowContextHelpButtonHint);
    window->setFlags(flags);
#endif
}

/** How much room a menu leaves for the shortcuts of its items. */
inline int shortcutWidth(const QStyleOptionMenuItem& item) {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return item.tabWidth;
#else
    return item.reservedShortcutWidth;
#endif
}

/** Where something is dropped, or would be. */
inline QPoint dropPosition(const QDropEvent& event) {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return event.pos();
#else
    return event.position().toPoint();
#endif
}

} // namespace Kestrel::UI
