// The keys of an animated parameter over time, and the transfer curves of a grade.

#include <KxUI/curveedit/CurveView.h>
#include <KxUI/curveedit/CurvesModel.h>
#include <KxUI/curveedit/KeyCurveModel.h>
#include <KxUI/time/TimeFormatter.h>

#include <QApplication>
#include <QHBoxLayout>

#include <cmath>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    auto* row = new QHBoxLayout(&window);

    // Two parameters over the frames 1001 to 1100, edited together. Keys stay on whole frames.
    auto* keys = new KeyCurveModel(&window);
    for (const QString& name : {QStringLiteral("x"), QStringLiteral("y")}) {
        KeyCurve curve;
        for (int i = 0; i < 6; ++i) {
            KeyCurve::Key key; // Monotone: never beyond the keys
            key.x = 1004 + 18 * i;
            key.y = 3 * std::sin(1.3 * i + keys->count());
            curve.insert(key);
        }
        const int index = keys->addCurve(name, curve);
        CurveModel::Limits limits = keys->limits(index);
        limits.stepX = 1;
        keys->setLimits(index, limits);
    }
    auto* timeline = new CurveView;
    timeline->setModel(keys);
    timeline->setOthersEditable(true);
    timeline->setPressOffLine(CurveView::Selects); // a rubber band
    auto* formatter = new TimeFormatter(&window);
    formatter->setTimeDisplayFormat(false, false); // frame numbers
    timeline->setTimeAxis(formatter);
    timeline->setNominalRange(QRectF(1001, -4, 99, 8));
    timeline->setPlayhead(1050);
    keys->select(0, 2, 2, CurveModel::SelectOnly);
    row->addWidget(timeline, 2);

    // What a grade does to red, green, blue and all of them, with the histogram of a picture behind.
    auto* grade = new CurvesModel(&window);
    Curves curves(4, 8, 2);
    Curve soft(8, 4);
    soft.setKnot(1, {0.25F, 0.15F, false});
    soft.setKnot(2, {0.7F, 0.82F, true});
    curves.setCurve(0, soft);
    grade->setCurves(curves);
    auto* view = new CurveView;
    view->setModel(grade);
    CurveHistogram histogram;
    for (int bin = 0; bin < CurveHistogram::Bins; ++bin)
        histogram.counts[std::size_t(bin)] =
            std::uint32_t(1e4 * std::exp(-std::pow((bin - 90) / 40.0, 2)));
    view->setHistogram({histogram});
    view->setMarker(0.18); // the pixel under the mouse, say
    row->addWidget(view, 1);

    // An edit of the user, from its first change to its end: one step of a history, or none.
    Curves before = grade->curves();
    QObject::connect(view, &CurveView::editStarted, grade, [&] { before = grade->curves(); });
    QObject::connect(view, &CurveView::editFinished, grade, [&](bool accepted) {
        if (accepted)
            qInfo("%s", qPrintable(view->editText())); // a history keeps `before`, too
    });

    window.resize(820, 300);
    window.show();
    return QApplication::exec();
}
