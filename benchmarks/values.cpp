#include <KxUI/values/DoubleSpinBox.h>
#include <KxUI/values/NumberEntry_p.h>

#include <support/Bench.h>

#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QGridLayout>

#include <muParser.h>

#include <vector>

namespace {

using namespace Kestrel;
namespace Bench = Kestrel::Bench;

constexpr int Fields = 300;
constexpr int Columns = 10;

UI::NumberEntry read(const QString& text, const UI::NumberNotation& notation) {
    static const UI::ValueUnits none;
    return UI::readNumber(text, {notation, none, -1, 0.0});
}

/** A panel of number fields. */
template <class Field>
class Panel : public QWidget {
public:
    Panel() {
        auto* grid = new QGridLayout(this);
        for (int i = 0; i < Fields; ++i) {
            auto* field = new Field;
            field->setDecimals(4);
            field->setRange(-1000.0, 1000.0);
            grid->addWidget(field, i / Columns, i % Columns);
            fields.push_back(field);
        }
        resize(1200, 900);
        show();
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }
    std::vector<Field*> fields;
};

template <class Field>
void setAndRepaint(benchmark::State& state) {
    Panel<Field> panel;
    int step = 0;
    for (auto _ : state) {
        ++step;
        for (int i = 0; i < Fields; ++i)
            panel.fields[std::size_t(i)]->setValue((step * 37 + i) % 1000 * 0.125);
        QCoreApplication::processEvents();
    }
}

template <class Field>
void create(benchmark::State& state) {
    for (auto _ : state) {
        QWidget parent;
        for (int i = 0; i < Fields; ++i)
            new Field(&parent);
        state.PauseTiming(); // their end
        qDeleteAll(parent.children());
        state.ResumeTiming();
    }
}

void addReading() {
    const std::string expression = "number: read \"2*(3+4.5)/7\"";
    Bench::add(expression, "ours", [](benchmark::State& state) {
        const QString text = QStringLiteral("2*(3+4.5)/7");
        const UI::NumberNotation notation;
        for (auto _ : state)
            benchmark::DoNotOptimize(read(text, notation));
    });
    Bench::add(expression, "muParser", [](benchmark::State& state) {
        mu::Parser parser;
        for (auto _ : state) {
            parser.SetExpr("2*(3+4.5)/7");
            benchmark::DoNotOptimize(parser.Eval());
        }
    });
    Bench::targetRatio(expression, "muParser", 8);

    const std::string number = "number: read \"1234,5678\" in German";
    const QLocale german(QStringLiteral("de_DE"));
    Bench::add(number, "ours", [german](benchmark::State& state) {
        const QString text = QStringLiteral("1234,5678");
        const auto notation = UI::NumberNotation::of(german);
        for (auto _ : state)
            benchmark::DoNotOptimize(read(text, notation));
    });
    Bench::add(number, "QLocale::toDouble", [german](benchmark::State& state) {
        const QString text = QStringLiteral("1234,5678");
        for (auto _ : state)
            benchmark::DoNotOptimize(german.toDouble(text));
    });
    Bench::targetRatio(number, "QLocale::toDouble", 0.5);
}

void addWriting() {
    const std::string text = "number: write with up to 4 places";
    const auto number = [](int i) { return (i * 37 % 1000) * 0.1251; };
    Bench::add(text, "ours", [number](benchmark::State& state) {
        const UI::DoubleSpinBox field;
        int i = 0;
        for (auto _ : state)
            benchmark::DoNotOptimize(field.textFromValue(number(++i)));
    });
    Bench::add(text, "QDoubleSpinBox", [number](benchmark::State& state) {
        QDoubleSpinBox field;
        field.setDecimals(4);
        int i = 0;
        for (auto _ : state)
            benchmark::DoNotOptimize(field.textFromValue(number(++i)));
    });
    Bench::targetRatio(text, "QDoubleSpinBox", 1);
}

void addFields() {
    const std::string repaint = "300 number fields: all set and painted";
    Bench::add(repaint, "ours", setAndRepaint<UI::DoubleSpinBox>);
    Bench::add(repaint, "QDoubleSpinBox", setAndRepaint<QDoubleSpinBox>);
    Bench::targetRatio(repaint, "QDoubleSpinBox", 1);
    const std::string made = "300 number fields: made";
    Bench::add(made, "ours", create<UI::DoubleSpinBox>);
    Bench::add(made, "QDoubleSpinBox", create<QDoubleSpinBox>);
    Bench::targetRatio(made, "QDoubleSpinBox", 0.8);
}

} // namespace

/** Registers the cases of the sliders along with those of the fields. */
void registerSliderBenchmarks();

void registerBenchmarks() {
    addReading();
    addWriting();
    addFields();
    registerSliderBenchmarks();
}
