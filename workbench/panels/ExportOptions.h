#pragma once

#include "export/ExportPlan.h"

#include <QWidget>

#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;

namespace Kestrel::Workbench {

class Session;

/** What is asked beside the name when a sequence, or one frame of it, is exported: which frames, how
    deep a PNG is, and whether the grade is applied. */
class ExportOptions : public QWidget {
    Q_OBJECT

public:
    enum class What { Sequence, Frame };

    /** @param session  borrowed; what is open in it is what will be exported, whatever is opened
        meanwhile */
    ExportOptions(Session* session, What what, QWidget* parent = nullptr);

    /** What will be exported to a file of this name; nothing where the suffix says no format.
        @param path  in the bytes of the file system */
    std::optional<ExportPlan> planFor(const std::string& path) const;

    /** What speaks against it, for the user. */
    QString problemWith(const std::string& path, bool isSequence) const;

    /** The frames that are chosen, both inclusive. */
    Base::Time first() const;
    Base::Time last() const;

    /** Shows what only matters to one format. */
    void showFormatOf(const std::string& path);

signals:
    void rangeChanged();

private:
    void makeRanges(Session* session);
    void showNote();

    ExportPlan m_plan; ///< without format and name
    What m_what;
    QComboBox* m_range;
    QComboBox* m_depth;
    QLabel* m_depthLabel;
    QCheckBox* m_graded;
    QLabel* m_note;
};

} // namespace Kestrel::Workbench
