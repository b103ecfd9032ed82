#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeModel.h>
#include <KxUI/scopes/ScopeUnit.h>

#include <QPoint>
#include <QString>
#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class ImageStatisticsPanelPrivate;

/** Figures of a ScopeModel's picture in a table, a row for each channel, with what concerns all of
    them below. The table can be walked through by keys and copied; a double click on a minimum or a
    maximum asks where it is. While a film plays, figures change at most ten times a second, and
    columns grow but do not shrink. Interface thread. */
class KXUI_EXPORT ImageStatisticsPanel : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int precision READ precision WRITE setPrecision NOTIFY precisionChanged)
    Q_PROPERTY(Columns columns READ columns WRITE setColumns NOTIFY columnsChanged)
    Q_PROPERTY(bool showDifference READ showDifference WRITE setShowDifference NOTIFY
                   showDifferenceChanged)

public:
    /** The figures of a channel; the numbers are part of saved states. */
    enum Column {
        Minimum = 1,             ///< the smallest finite value
        Maximum = 2,             ///< the largest finite value
        Mean = 4,                ///< of finite values
        Deviation = 8,           ///< of the whole population
        Low = 16,                ///< the value that 1 % do not exceed
        Median = 32,             ///< the value that half of them do not exceed
        High = 64,               ///< the value that 99 % do not exceed
        Below = 128,             ///< how many are below 0
        Above = 256,             ///< how many are above 1
        NotANumber = 512,        ///< how many are no number
        PositiveInfinity = 1024, ///< how many of these there are
        NegativeInfinity = 2048, ///< how many of these there are
        Distinct = 4096,         ///< how many values differ
        Legal = 8192,            ///< the share within 0 to 1, in percent
        EbuR103 = 16384,         ///< the share within the preferred range of EBU R 103, in percent
        AllColumns = 32767       ///< all of these
    };
    /** Bits of Column. */
    Q_DECLARE_FLAGS(Columns, Column)
    Q_FLAG(Columns)

    explicit ImageStatisticsPanel(QWidget* parent = nullptr);
    ~ImageStatisticsPanel() override;

    /** Whose figures these are; borrowed, forgotten when it is destroyed, null at first. */
    ScopeModel* model() const;
    void setModel(ScopeModel* model);

    /** What values are told in; ScopeUnit::Value at first. */
    ScopeUnit unit() const;
    void setUnit(ScopeUnit unit);
    /** Digits behind the point, 0 to 9; -1 (at first): those of the unit. */
    int precision() const;
    void setPrecision(int digits);
    /** The figures that are shown; all at first. */
    Columns columns() const;
    void setColumns(Columns columns);
    /** A column as users know it, in their language, for a menu of columns. */
    static QString columnText(Column column);
    /** Whether values are differences from what the model holds, if it holds something. Off at
        first. */
    bool showDifference() const;
    void setShowDifference(bool show);

    /** The table as it is shown, with a point and without groups of digits; a line for each row, and
        one for the names of the columns. */
    QString toText(QChar separator = QLatin1Char('\t')) const;

    QSize sizeHint() const override;

public Q_SLOTS:
    /** Puts toText() on the clipboard. */
    void copy();

Q_SIGNALS:
    /** The user asks for the place of a minimum or a maximum: the first pixel of that value in the
        full frame. Comes some time after the double click. */
    void pixelRequested(const QPoint& fullFramePixel);

    /** Something became another one, by whomever; sent after it did. */
    void unitChanged();
    void precisionChanged(int digits);
    void columnsChanged(Kestrel::UI::ImageStatisticsPanel::Columns columns);
    void showDifferenceChanged(bool show);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    friend class ImageStatisticsPanelPrivate;

    const std::unique_ptr<ImageStatisticsPanelPrivate> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ImageStatisticsPanel::Columns)

} // namespace Kestrel::UI
