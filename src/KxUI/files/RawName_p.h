#pragma once

#include <KxUI/files/platform/Platform_p.h>

#include <QByteArray>
#include <QString>

namespace Kestrel::UI {

/** The bytes of a name; the view holds while they do. */
inline std::string_view viewOf(const QByteArray& name) {
    return {name.constData(), static_cast<std::size_t>(name.size())};
}

inline QByteArray bytesOf(std::string_view name) {
    return QByteArray(name.data(), static_cast<int>(name.size()));
}

/** A name in the system's encoding as text, with replacement characters for what it cannot mean. */
inline QString decodedName(const QByteArray& name) {
    const std::string text = Platform::toUtf8(viewOf(name));
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

/** A text as a name in the system's encoding. */
inline QByteArray encodedName(const QString& text) {
    return bytesOf(Platform::fromUtf8(text.toStdString()));
}

} // namespace Kestrel::UI
