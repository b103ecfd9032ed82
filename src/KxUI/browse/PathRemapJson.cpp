#include <KxUI/browse/PathRemapModel_p.h>

#include <KxUI/kit/QtCompat_p.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int mostBytes = 1024 * 1024;

QString read(const QJsonObject& object, PathRule& rule) {
    const auto text = [&](const char* key) { return object.value(QLatin1String(key)).toString(); };
    rule.from = text("source_path").toStdString();
    rule.to = text("destination_path").toStdString();
    rule.note = text("note").toStdString();
    rule.isEnabled = object.value(QLatin1String("enabled")).toBool(true);
    const QString format = text("source_path_format");
    rule.fromStyle = format.compare(QLatin1String("WINDOWS"), Qt::CaseInsensitive) == 0
                         ? PathStyle::Windows
                         : PathStyle::Posix;
    if (rule.from.empty())
        return QStringLiteral("source_path");
    if (rule.to.empty())
        return QStringLiteral("destination_path");
    return format.isEmpty() ? QStringLiteral("source_path_format") : QString();
}

QString readAll(const QByteArray& json, std::vector<PathRule>& rules, std::size_t most) {
    if (json.size() > mostBytes)
        return PathRemapModel::tr("The file is too large.");
    QJsonParseError failure;
    const QJsonDocument document = QJsonDocument::fromJson(json, &failure);
    if (failure.error != QJsonParseError::NoError)
        return PathRemapModel::tr("Line %1: %2.")
            .arg(json.left(static_cast<int>(failure.offset)).count('\n') + 1)
            .arg(failure.errorString());
    const QJsonObject all = document.object();
    if (all.value(QLatin1String("version")).toString() != QLatin1String("pathmapping-1.0"))
        return PathRemapModel::tr("The file has no path rules of a version that is known.");
    const QJsonArray array = all.value(QLatin1String("path_mapping_rules")).toArray();
    if (static_cast<std::size_t>(array.size()) > most)
        return PathRemapModel::tr("The file has too many rules.");
    for (const QJsonValue& value : array) {
        PathRule rule;
        const QString missing = read(value.toObject(), rule);
        if (!missing.isEmpty())
            return PathRemapModel::tr("Rule %1: %2 is missing.").arg(rules.size() + 1).arg(missing);
        rules.push_back(std::move(rule));
    }
    return {};
}

} // namespace

std::vector<PathRule> PathRemapModel::fromJson(const QByteArray& json, QString* error) {
    std::vector<PathRule> rules;
    const QString problem = readAll(json, rules, Private::Most);
    if (error)
        *error = problem;
    if (!problem.isEmpty())
        return {};
    // A longer source is the more special one.
    std::stable_sort(rules.begin(), rules.end(), [](const PathRule& a, const PathRule& b) {
        return a.from.size() > b.from.size();
    });
    return rules;
}

QByteArray PathRemapModel::toJson(const std::vector<PathRule>& rules, QString* error) {
    QJsonArray array;
    for (const PathRule& rule : rules) {
        QJsonObject object;
        const auto add = [&](const char* key, const std::string& bytes) {
            const auto text = fromStrictUtf8(bytes.data(), static_cast<int>(bytes.size()));
            if (text)
                object.insert(QLatin1String(key), *text);
            return text.has_value();
        };
        if (!add("source_path", rule.from) || !add("destination_path", rule.to) ||
            !add("note", rule.note)) {
            if (error)
                *error =
                    tr("Rule %1 has a path that cannot be written as text.").arg(array.size() + 1);
            return {};
        }
        object.insert(QLatin1String("source_path_format"), rule.fromStyle == PathStyle::Windows
                                                               ? QStringLiteral("WINDOWS")
                                                               : QStringLiteral("POSIX"));
        object.insert(QLatin1String("enabled"), rule.isEnabled);
        array.append(object);
    }
    if (error)
        error->clear();
    const QJsonObject all{{QStringLiteral("version"), QStringLiteral("pathmapping-1.0")},
                          {QStringLiteral("path_mapping_rules"), array}};
    return QJsonDocument(all).toJson();
}

} // namespace Kestrel::UI
