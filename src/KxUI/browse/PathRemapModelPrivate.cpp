#include <KxUI/browse/PathRemapModel_p.h>

#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/RawName_p.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

bool areSame(const PathRule& a, const PathRule& b) {
    return a.isEnabled == b.isEnabled && a.fromStyle == b.fromStyle && a.from == b.from &&
           a.to == b.to && a.note == b.note;
}

} // namespace

// Rows before and behind what has changed stay what they are.
void PathRemapModel::Private::show(const std::vector<PathRule>& wanted) {
    const std::size_t shorter = std::min(rules.size(), wanted.size());
    std::size_t first = 0;
    while (first < shorter && areSame(rules[first], wanted[first]))
        ++first;
    std::size_t behind = 0;
    while (behind < shorter - first &&
           areSame(rules[rules.size() - 1 - behind], wanted[wanted.size() - 1 - behind]))
        ++behind;
    if (first + behind == rules.size() && rules.size() == wanted.size())
        return;
    const int row = static_cast<int>(first);
    const int oldLast = static_cast<int>(rules.size() - behind) - 1;
    const int newLast = static_cast<int>(wanted.size() - behind) - 1;
    const int kept = std::min(oldLast, newLast);
    if (newLast > oldLast) {
        // The row that was typed into becomes the rule, and another one comes below it.
        const int shift = isDraftTaken ? 1 : 0;
        q->beginInsertRows(QModelIndex(), kept + 1 + shift, newLast + shift);
        rules = wanted;
        q->endInsertRows();
    } else if (oldLast > newLast) {
        q->beginRemoveRows(QModelIndex(), kept + 1, oldLast);
        rules = wanted;
        q->endRemoveRows();
    } else {
        rules = wanted;
    }
    const QPointer<PathRemapModel> alive(q);
    if (kept >= row)
        Q_EMIT q->dataChanged(q->index(row, 0), q->index(kept, ColumnCount - 1));
    if (!alive)
        return;
    remap = PathRemap(rules);
    rework();
    if (alive)
        Q_EMIT q->rulesChanged();
}

// What depends on all the rules, or on the path that is tried.
void PathRemapModel::Private::rework() {
    result = remap.map(tried);
    Q_EMIT q->dataChanged(q->index(0, On), q->index(count(), Status));
}

QVariant PathRemapModel::Private::dataOf(int row, int column, int role) const {
    const bool isNew = row == count();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return column == On ? QVariant() : QVariant(textOf(row, column));
    case Qt::CheckStateRole:
        if (column != On || isNew)
            return {};
        return static_cast<int>(ruleAt(row).isEnabled ? Qt::Checked : Qt::Unchecked);
    case Qt::ToolTipRole:
        return toolTipOf(row, column);
    case Qt::AccessibleTextRole:
        return spoken(row, column);
    case WindowsRole:
        return column == From && ruleAt(row).fromStyle == PathStyle::Windows &&
               !ruleAt(row).from.empty();
    case ProblemRole:
        return problemOf(row);
    case MatchRole:
        return !isNew && row == result.rule;
    case NewRowRole:
        return isNew;
    default:
        return {};
    }
}

QString PathRemapModel::Private::problemOf(int row) const {
    if (row >= count())
        return {};
    switch (PathRemap::problemOf(ruleAt(row))) {
    case PathRemap::Problem::None:
        break;
    case PathRemap::Problem::NoSource:
        return tr("Nothing to replace is given.");
    case PathRemap::Problem::RelativeSource:
        return tr("The path to replace must begin at the root or with a drive.");
    case PathRemap::Problem::UpwardSource:
        return tr("The path to replace must not have \u201c..\u201d in it.");
    case PathRemap::Problem::NoDestination:
        return tr("Nothing to replace it by is given.");
    }
    const int first = remap.shadowedBy(row);
    return first < 0 ? QString() : tr("Never used: rule %1 comes first.").arg(first + 1);
}

QString PathRemapModel::Private::textOf(int row, int column) const {
    const PathRule& rule = ruleAt(row);
    switch (column) {
    case From:
        return decodedName(bytesOf(rule.from));
    case To:
        return decodedName(bytesOf(rule.to));
    case Result:
        return row < count() && row == result.rule ? FileTexts::name(result.path) : QString();
    case Status:
        return problemOf(row);
    default:
        return {};
    }
}

QString PathRemapModel::Private::toolTipOf(int row, int column) const {
    if (row == count())
        return tr("Type both paths here to add a rule");
    const QString problem = problemOf(row);
    return problem.isEmpty() ? textOf(row, column) : problem;
}

QString PathRemapModel::Private::spoken(int row, int column) const {
    if (column == On)
        return row == count() ? QString() : ruleAt(row).isEnabled ? tr("on") : tr("off");
    QString text = textOf(row, column);
    if (row == count() && text.isEmpty() && (column == From || column == To))
        return tr("new rule");
    if (column == From && !problemOf(row).isEmpty())
        text += QStringLiteral(", ") + problemOf(row);
    return text;
}

bool PathRemapModel::Private::setPath(int row, int column, const QString& text) {
    if (text == textOf(row, column))
        return true; // bytes that are no text stay as they are
    if (row == count())
        return setDraft(column, text);
    std::vector<PathRule> wanted = rules;
    PathRule& rule = wanted[static_cast<std::size_t>(row)];
    const std::string path = encodedName(text).toStdString();
    if (column == From) {
        rule.from = path;
        rule.fromStyle = guessedStyle(text);
    } else {
        rule.to = path;
    }
    q->editRules(wanted, tr("Change Rule"));
    return true;
}

bool PathRemapModel::Private::setDraft(int column, const QString& text) {
    const std::string path = encodedName(text).toStdString();
    if (column == From) {
        draft.from = path;
        draft.fromStyle = guessedStyle(text);
    } else {
        draft.to = path;
    }
    if (draft.from.empty() || draft.to.empty() || rules.size() >= Most) {
        const QModelIndex index = q->index(count(), column);
        Q_EMIT q->dataChanged(index, index);
        return true;
    }
    std::vector<PathRule> wanted = rules;
    wanted.push_back(std::exchange(draft, PathRule()));
    const QPointer<PathRemapModel> alive(q);
    isDraftTaken = true;
    q->editRules(wanted, tr("Add Rule"));
    if (alive)
        isDraftTaken = false;
    return true;
}

} // namespace Kestrel::UI
