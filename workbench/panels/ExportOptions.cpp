#include "panels/ExportOptions.h"

#include "media/Paths.h"
#include "play/Session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>

namespace Kestrel::Workbench {

namespace {

/** Data of the range's entries. */
using Range = std::pair<Base::Time, Base::Time>;

QVariant asData(const Range& range) {
    return QVariantList{qlonglong(range.first), qlonglong(range.second)};
}

} // namespace

ExportOptions::ExportOptions(Session* session, What what, QWidget* parent)
    : QWidget(parent)
    , m_what(what)
    , m_range(new QComboBox)
    , m_depth(new QComboBox)
    , m_depthLabel(new QLabel(tr("&Depth:")))
    , m_graded(new QCheckBox(tr("Apply the &grade")))
    , m_note(new QLabel) {
    m_plan.sequence = session->sequence();
    m_plan.grade = session->grades()->grade();
    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    makeRanges(session);
    if (what == What::Sequence)
        form->addRow(tr("F&rames:"), m_range);
    else
        m_range->setParent(this);
    m_range->setVisible(what == What::Sequence);
    m_depth->addItem(tr("8 bits a channel"), false);
    m_depth->addItem(tr("16 bits a channel"), true);
    m_depthLabel->setBuddy(m_depth);
    auto* row = new QHBoxLayout;
    row->addWidget(m_graded);
    row->addStretch(1);
    row->addWidget(m_depthLabel);
    row->addWidget(m_depth);
    form->addRow(row);
    m_graded->setChecked(!session->grades()->isBypassed());
    m_graded->setEnabled(!m_plan.grade.isIdentity());
    m_note->setWordWrap(true);
    form->addRow(m_note);
    connect(m_range, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
        showNote();
        emit rangeChanged();
    });
    showNote();
}

void ExportOptions::makeRanges(Session* session) {
    const Sequence& sequence = m_plan.sequence;
    const auto add = [this](const QString& text, Base::Time first, Base::Time last) {
        m_range->addItem(text.arg(first).arg(last), asData({first, last}));
    };
    if (m_what == What::Frame) {
        const Base::Time frame = session->heldTime();
        return add(QStringLiteral("%1-%2"), frame, frame);
    }
    add(tr("All, %1 to %2"), sequence.firstTime(), sequence.lastTime());
    const UI::TimeSliderModel& times = *session->model();
    const bool hasIn = times.inTime() != Base::InvalidTime;
    const bool hasOut = times.outTime() != Base::InvalidTime;
    if (!hasIn && !hasOut)
        return;
    add(tr("Marked, %1 to %2"), hasIn ? times.inTime() : sequence.firstTime(),
        hasOut ? times.outTime() : sequence.lastTime());
    m_range->setCurrentIndex(1);
}

Base::Time ExportOptions::first() const {
    return m_range->currentData().toList().value(0).toLongLong();
}

Base::Time ExportOptions::last() const {
    return m_range->currentData().toList().value(1).toLongLong();
}

std::optional<ExportPlan> ExportOptions::planFor(const std::string& path) const {
    ExportPlan plan = m_plan;
    plan.folder = parentFolder(path);
    plan.name = fileNameOf(path);
    plan.first = first();
    plan.last = last();
    if (!m_graded->isChecked())
        plan.grade = Grade();
    const auto format = exportFormatOf(plan.name, m_depth->currentData().toBool());
    if (!format)
        return std::nullopt;
    plan.format = *format;
    return plan;
}

QString ExportOptions::problemWith(const std::string& path, bool isSequence) const {
    const auto plan = planFor(path);
    if (!plan)
        return tr("Pictures are exported as .exr or .png.");
    const std::size_t frames = plan->frames().size();
    if (frames == 0)
        return tr("None of these frames has a file.");
    if (!isSequence && frames > 1)
        return tr("Write where the number of the frame is to stand, as in name.####.exr.");
    if (plan->overwritesItself())
        return tr("These are the files that the frames are read from. Choose another name.");
    return {};
}

void ExportOptions::showFormatOf(const std::string& path) {
    const bool isPng = exportFormatOf(fileNameOf(path), false) == ExportFormat::Png8;
    m_depth->setEnabled(isPng);
    m_depthLabel->setEnabled(isPng);
}

void ExportOptions::showNote() {
    ExportPlan plan = m_plan;
    plan.first = first();
    plan.last = last();
    const auto missing = plan.missing();
    const int count = int(missing.size());
    m_note->setVisible(count > 0 && m_what == What::Sequence);
    m_note->setText(tr("%n frame(s) of these have no file and are left out: %1", nullptr, count)
                        .arg(framesText(missing)));
}

} // namespace Kestrel::Workbench
