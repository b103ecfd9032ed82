#pragma once

#include <KxUI/progress/ProgressDialog.h>
#include <KxUI/progress/ProgressManager.h>

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

#include <set>
#include <vector>

class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace Kestrel::UI {

class ProgressRow;

struct ProgressDialog::Private {
    explicit Private(ProgressDialog* dialog);

    void makeWidgets();
    void addRow(int row);
    void removeRow(int row);
    void refresh(int first, int last);
    void refreshFrame();
    void fit();
    void decide();
    bool wantsToOpen() const;
    bool isNeeded() const;
    void hideByUser();
    void hideRow(ProgressRow* row);
    QString placeKey() const;
    void savePlace() const;
    void restorePlace();
    void clear();
    QString title() const;

    ProgressDialog* const q;
    QPointer<ProgressManager> manager;
    std::chrono::milliseconds showAfter{500};
    bool opensByItself = true;
    bool closesWhenIdle = true;
    bool isFollowing = false;
    bool remembersPlace = false;
    bool isPlaced = false;                   ///< where it was remembered
    std::set<const ProgressTask*> dismissed; ///< that went on when the user hid it
    std::vector<ProgressRow*> rows;
    QScrollArea* area = nullptr;
    QVBoxLayout* list = nullptr;
    QPushButton* cancelAll = nullptr;
    QPushButton* hide = nullptr;
    QTimer timer; ///< looks whether to open or to close
    QElapsedTimer visibleFor;
    QElapsedTimer titleAge;
};

} // namespace Kestrel::UI
