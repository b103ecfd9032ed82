#pragma once

#include <KxUI/browse/NameRow_p.h>

#include <QCoreApplication>

class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QSpinBox;
class QToolButton;
class QWidget;

namespace Kestrel::UI {

class ChoiceBar;
class FileBrowser;
class NoticeLine;
class PushButton;
class ReplaceSheet;

/** The widgets of a file chooser and where they stand. */
struct ChooserForm {
    Q_DECLARE_TR_FUNCTIONS(FileChooserDialog)

public:
    /** The choices of `as`. */
    enum As { Sequence, SingleFile };

    FileBrowser* browser = nullptr;
    QLabel* nameLabel = nullptr;
    QLineEdit* name = nullptr;
    QToolButton* recent = nullptr;
    QToolButton* lower = nullptr; ///< the version
    QToolButton* higher = nullptr;
    QLabel* framesLabel = nullptr;
    QLineEdit* frames = nullptr;
    NoticeLine* notice = nullptr;
    QLabel* asLabel = nullptr;
    ChoiceBar* as = nullptr;
    QLabel* paddingLabel = nullptr;
    QSpinBox* padding = nullptr;
    QLabel* filterLabel = nullptr;
    QComboBox* filter = nullptr;
    QToolButton* ownFilter = nullptr; ///< a pattern that was typed; takes it back
    QHBoxLayout* extraRow = nullptr;
    QWidget* buttons = nullptr;
    PushButton* cancel = nullptr;
    PushButton* accept = nullptr;
    ReplaceSheet* sheet = nullptr;

    void build(QWidget* dialog);

    /** The order of the Tab key, with the host's widget where it has one. */
    void orderTabs(QWidget* extra) const;

    /** Which fields there are. */
    struct Fields {
        NameRules::Mode mode = NameRules::Mode::OpenFile;
        bool choosesKind = false; ///< a sequence or a single file
        bool hasVersion = false;
        bool hasFrames = false;
        bool hasPadding = false;
        bool hasFilters = false;
    };
    void showFields(const Fields& fields);

private:
    void makeNameRow(QWidget* dialog);
    void makeKindRow(QWidget* dialog);
    void makeFilterRow(QWidget* dialog);
    void makeButtons(QWidget* dialog);
    QGridLayout* layOut();
};

} // namespace Kestrel::UI
