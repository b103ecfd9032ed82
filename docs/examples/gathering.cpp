// A folder in a view that never waits for the disk: rows come while it is read, sizes for what is
// shown, and what changes later finds its place.

#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileManager.h>

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTreeView>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);

    FileListModel model;
    QTreeView view;
    view.setModel(&model);
    view.setUniformRowHeights(true); // or the view asks every row
    view.setRootIsDecorated(false);
    view.setAlternatingRowColors(true);
    view.setSelectionMode(QAbstractItemView::ExtendedSelection);

    // Sizes and times are asked for where somebody looks.
    const auto tellVisible = [&] {
        const QModelIndex first = view.indexAt({0, 0});
        const QModelIndex last = view.indexAt({0, view.viewport()->height() - 1});
        model.setVisibleRows(first.row(), last.isValid() ? last.row() : model.rowCount() - 1);
    };
    QObject::connect(&model, &FileListModel::settled, &view, tellVisible);
    QObject::connect(view.verticalScrollBar(), &QScrollBar::valueChanged, &view, tellVisible);

    FileGatherer* const gatherer = model.gatherer();
    QObject::connect(gatherer, &FileGatherer::waiting, &view, [&](int milliseconds) {
        view.setWindowTitle(QStringLiteral("No answer for %1 s").arg(milliseconds / 1000.0));
    });
    QObject::connect(gatherer, &FileGatherer::finished, &view,
                     [&] { view.setWindowTitle(FileManager::errorText(*gatherer->listing())); });
    gatherer->gatherPath(QCoreApplication::arguments().value(1, QStringLiteral(".")));

    const int widths[] = {190, 90, 60, 70, 110};
    for (int column = 0; column < 5; ++column)
        view.header()->resizeSection(column, widths[column]);
    view.resize(720, 190);
    view.show();
    return QApplication::exec();
}
