#include <KxUI/picker/platform/ScreenPortal_p.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QPointer>
#include <QVariantMap>

#include <cmath>
#include <thread>
#include <utility>

namespace Kestrel::UI {
namespace {

const QString Service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString Place = QStringLiteral("/org/freedesktop/portal/desktop");
const QString Interface = QStringLiteral("org.freedesktop.portal.Screenshot");
const QString Request = QStringLiteral("org.freedesktop.portal.Request");
const QString BusName = QStringLiteral("kxui-pipette");

std::optional<ScreenColor::Rgb> colorIn(const QVariant& value) {
    if (!value.canConvert<QDBusArgument>())
        return {};
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)"))
        return {};
    double parts[3]{};
    argument.beginStructure();
    for (double& part : parts)
        argument >> part;
    argument.endStructure();
    ScreenColor::Rgb rgb{};
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        if (!std::isfinite(parts[i]))
            return {};
        rgb[i] = static_cast<float>(parts[i]);
    }
    return rgb;
}

} // namespace

/** One question to the desktop. Deletes itself when it is answered; it goes with its context. */
class PortalQuestion : public QObject {
    Q_OBJECT

public:
    PortalQuestion(ScreenColor::Told told, QObject* context)
        : QObject(context)
        , m_told(std::move(told)) {}

    void ask() {
        QDBusConnection bus(BusName);
        QDBusMessage call =
            QDBusMessage::createMethodCall(Service, Place, Interface, QStringLiteral("PickColor"));
        // The name of the answer is known before it can come.
        const QString token = QStringLiteral("kxui%1").arg(++m_asked);
        QString sender = bus.baseService().mid(1);
        sender.replace(QLatin1Char('.'), QLatin1Char('_'));
        listen(QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token));
        call << QString() << QVariantMap{{QStringLiteral("handle_token"), token}};
        auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this,
                [this](QDBusPendingCallWatcher* ended) {
                    const QDBusPendingReply<QDBusObjectPath> reply = *ended;
                    if (reply.isError())
                        end({});
                    else
                        listen(reply.value().path()); // of old desktops
                });
    }

    void end(const std::optional<ScreenColor::Rgb>& rgb) {
        const ScreenColor::Told told = std::exchange(m_told, nullptr);
        deleteLater();
        if (told)
            told(rgb);
    }

private Q_SLOTS:
    void answer(uint response, const QVariantMap& results) {
        end(response == 0 ? colorIn(results.value(QStringLiteral("color"))) : std::nullopt);
    }

private:
    void listen(const QString& path) {
        if (std::exchange(m_path, path) != path)
            QDBusConnection(BusName).connect(Service, path, Request, QStringLiteral("Response"),
                                             this, SLOT(answer(uint, QVariantMap)));
    }

    static inline int m_asked = 0;
    ScreenColor::Told m_told;
    QString m_path;
};

bool hasScreenPortal() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

void askScreenPortal(QObject* context, const ScreenColor::Told& told) {
    const QPointer<PortalQuestion> question = new PortalQuestion(told, context);
    // Connecting waits for the bus; nobody waits for this thread.
    std::thread([question] {
        const QDBusConnection bus =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, BusName);
        const bool isConnected = bus.isConnected();
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [question, isConnected] {
                if (question && isConnected)
                    question->ask();
                else if (question)
                    question->end({});
            },
            Qt::QueuedConnection);
    }).detach();
}

} // namespace Kestrel::UI

#include "ScreenPortal.moc"
