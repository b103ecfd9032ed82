#include <KxUI/kit/ChannelColors.h>
#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/Disclosure.h>

#include <support/Bench.h>

#include <KCollapsibleGroupBox>
#include <QApplication>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QProxyStyle>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

#include <memory>
#include <vector>

namespace {

using namespace Kestrel;

constexpr int Sections = 50;
constexpr int WidgetsEach = 20;
constexpr int Bars = 100;
constexpr int ChoicesEach = 5;

/** Neither ours nor the peer moves. */
class Still : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_Widget_Animation_Duration
                   ? 0
                   : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

void settle(QWidget& window) {
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
    window.repaint();
}

void fill(QLayout& layout) {
    for (int i = 0; i < WidgetsEach; ++i)
        layout.addWidget(new QLabel(QStringLiteral("Parameter %1").arg(i)));
}

QWidget* ours(std::vector<UI::Disclosure*>& all) {
    auto* section = new UI::Disclosure;
    section->setTitle(QStringLiteral("Section"));
    auto* content = new QWidget;
    fill(*new QVBoxLayout(content));
    section->setContent(content);
    all.push_back(section);
    return section;
}

QWidget* peers(std::vector<KCollapsibleGroupBox*>& all) {
    auto* section = new KCollapsibleGroupBox;
    section->setTitle(QStringLiteral("Section"));
    fill(*new QVBoxLayout(section));
    all.push_back(section);
    return section;
}

/** A scrolled column of sections, all closed. */
template <class Section>
struct Panel {
    explicit Panel(QWidget* (*make)(std::vector<Section*>&)) {
        auto* column = new QWidget;
        auto* layout = new QVBoxLayout(column);
        for (int i = 0; i < Sections; ++i)
            layout->addWidget(make(sections));
        layout->addStretch(1);
        area.setWidgetResizable(true);
        area.setWidget(column);
        area.resize(400, 800);
        area.show();
        settle(area);
    }

    QScrollArea area;
    std::vector<Section*> sections;
};

/** Opens all, lays them out and paints; closing them again is not counted. */
template <class Section>
void openAll(benchmark::State& state, QWidget* (*make)(std::vector<Section*>&)) {
    QStyle* const style = new Still; // the application's from now on
    QApplication::setStyle(style);
    Panel<Section> panel(make);
    const auto setAll = [&panel](bool open) {
        for (Section* section : panel.sections)
            section->setExpanded(open);
        settle(panel.area);
    };
    for (auto _ : state) {
        setAll(true);
        state.PauseTiming();
        setAll(false);
        state.ResumeTiming();
    }
}

template <class Section>
void createAll(benchmark::State& state, QWidget* (*make)(std::vector<Section*>&)) {
    for (auto _ : state) {
        Panel<Section> panel(make);
        benchmark::DoNotOptimize(panel.sections.data());
    }
}

QWidget* ourBar() {
    auto* bar = new UI::ChoiceBar;
    for (int i = 0; i < ChoicesEach; ++i)
        bar->addChoice(QStringLiteral("Choice %1").arg(i));
    bar->setCurrentIndex(1);
    return bar;
}

QWidget* peerBar() {
    auto* bar = new QWidget;
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* group = new QButtonGroup(bar);
    for (int i = 0; i < ChoicesEach; ++i) {
        auto* button = new QToolButton;
        button->setText(QStringLiteral("Choice %1").arg(i));
        button->setCheckable(true);
        group->addButton(button, i);
        layout->addWidget(button);
    }
    group->button(1)->setChecked(true);
    return bar;
}

struct BarPanel {
    explicit BarPanel(QWidget* (*make)()) {
        auto* layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        for (int i = 0; i < Bars; ++i)
            layout->addWidget(make());
    }

    QWidget window;
};

void createBars(benchmark::State& state, QWidget* (*make)()) {
    for (auto _ : state) {
        BarPanel panel(make);
        panel.window.show();
        settle(panel.window);
    }
    state.SetItemsProcessed(state.iterations() * Bars);
}

void repaintBars(benchmark::State& state, QWidget* (*make)()) {
    BarPanel panel(make);
    panel.window.show();
    settle(panel.window);
    for (auto _ : state)
        panel.window.repaint();
    state.SetItemsProcessed(state.iterations() * Bars);
}

} // namespace

void registerBenchmarks() {
    using namespace Kestrel::Bench;

    const std::string kde = "KCollapsibleGroupBox";
    const std::string open = "sections: open 50 of 20 widgets each";
    add(open, "ours", [](benchmark::State& state) { openAll(state, ours); });
    add(open, kde, [](benchmark::State& state) { openAll(state, peers); });
    // The peer's widgets stay shown behind its lower edge. Ours are hidden while a section is closed,
    // for the Tab key, readers and hosts that ask isVisible(): half the time goes into showing them.
    targetRatio(open, kde, 0.4);

    const std::string made = "sections: create and show 50 of 20 widgets each, closed";
    add(made, "ours", [](benchmark::State& state) { createAll(state, ours); });
    add(made, kde, [](benchmark::State& state) { createAll(state, peers); });

    const std::string buttons = "QButtonGroup, QToolButton";
    const std::string bars = "choice bar of 5: create and show";
    add(bars, "ours", [](benchmark::State& state) { createBars(state, ourBar); });
    add(bars, buttons, [](benchmark::State& state) { createBars(state, peerBar); });
    targetRatio(bars, buttons, 1.5);

    const std::string paint = "choice bar of 5: repaint";
    add(paint, "ours", [](benchmark::State& state) { repaintBars(state, ourBar); });
    add(paint, buttons, [](benchmark::State& state) { repaintBars(state, peerBar); });
    targetRatio(paint, buttons, 1.0);

    const std::string colors = "channel colours: one for a palette";
    add(colors, "ours", [](benchmark::State& state) {
        const QPalette palette;
        for (auto _ : state)
            benchmark::DoNotOptimize(UI::ChannelColors::of(palette).text(UI::ChannelColors::Green));
    });
}
