// Three track balls that grade, and what is told of an edit.

#include <KxUI/picker/TrackBall.h>
#include <KxUI/values/DoubleSpinBox.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>

#include <array>

using namespace Kestrel::UI;

namespace {

// A ball over its three numbers.
QVBoxLayout* makeColumn(TrackBall* ball, const QVector3D& factors) {
    auto* column = new QVBoxLayout;
    column->addWidget(ball, 1);
    std::array<DoubleSpinBox*, 3> fields{};
    for (DoubleSpinBox*& field : fields) {
        field = new DoubleSpinBox;
        field->setDecimals(3);
        field->setFewestDecimals(3);
        field->setDefaultValue(ball->neutral());
        column->addWidget(field);
    }
    // Whoever changes the factors, the fields show them, and the other way round.
    const auto show = [fields](const QVector3D& now) {
        for (int channel = 0; channel < 3; ++channel)
            fields[static_cast<std::size_t>(channel)]->setValue(static_cast<double>(now[channel]));
    };
    QObject::connect(ball, &TrackBall::factorsChanged, ball, show);
    ball->setFactors(factors);
    show(factors); // which may be those that it has
    for (int channel = 0; channel < 3; ++channel) {
        QObject::connect(fields[static_cast<std::size_t>(channel)], &DoubleSpinBox::valueEdited,
                         ball, [ball, channel](double value) {
                             QVector3D now = ball->factors();
                             now[channel] = static_cast<float>(value);
                             ball->setFactors(now);
                         });
    }
    return column;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    auto* row = new QHBoxLayout;

    auto* shadows = new TrackBall; // offsets: 0 does nothing
    shadows->setTitle(QStringLiteral("Shadows"));
    row->addLayout(makeColumn(shadows, QVector3D(0.01F, 0.03F, 0.08F)));

    auto* midtones = new TrackBall;
    midtones->setTitle(QStringLiteral("Midtones"));
    midtones->setMode(TrackBall::Gain); // 1 does nothing, the rim is a stop
    row->addLayout(makeColumn(midtones, QVector3D(1.0F, 1.0F, 1.0F)));

    auto* highlights = new TrackBall;
    highlights->setTitle(QStringLiteral("Highlights"));
    highlights->setMode(TrackBall::Gain);
    highlights->setRange(0.5); // a finer ball
    row->addLayout(makeColumn(highlights, QVector3D(1.3F, 1.1F, 0.95F)));

    auto* state = new QLabel(QStringLiteral("as it was"));
    for (TrackBall* ball : {shadows, midtones, highlights}) {
        QObject::connect(ball, &TrackBall::editStarted, state,
                         [=] { state->setText(QStringLiteral("changing")); });
        QObject::connect(ball, &TrackBall::editFinished, state, [=](bool accepted) {
            state->setText(accepted ? QStringLiteral("changed") : QStringLiteral("as it was"));
        });
    }
    auto* layout = new QVBoxLayout(&window);
    layout->addLayout(row, 1);
    layout->addWidget(state);

    window.resize(560, 320);
    window.show();
    return QApplication::exec();
}
