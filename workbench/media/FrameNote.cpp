#include "media/FrameNote.h"

#include <QCoreApplication>
#include <QLocale>

namespace Kestrel::Workbench {

QString FrameNote::text() const {
    const QString frame = QCoreApplication::translate("FrameNote", "Frame %1").arg(m_time);
    if (!m_message.isEmpty())
        return frame + QLatin1String(", ") + m_message;
    if (m_bytes > 0)
        return frame + QLatin1String(", ") + QLocale().formattedDataSize(qint64(m_bytes), 1);
    return frame;
}

} // namespace Kestrel::Workbench
