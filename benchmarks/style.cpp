#include <KxUI/style/ApplicationStyle.h>

#include <support/Bench.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCommonStyle>
#include <QGridLayout>
#include <QHoverEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStyleFactory>
#include <QWidget>

#include <algorithm>
#include <vector>

using Kestrel::UI::ApplicationStyle;

namespace {

const char* const peers[] = {"Fusion", "Breeze", "adwaita", "nothing drawn"};

/** What Qt itself needs to have a widget painted. */
class NoStyle : public QCommonStyle {
public:
    void drawPrimitive(PrimitiveElement, const QStyleOption*, QPainter*,
                       const QWidget*) const override {}
    void drawControl(ControlElement, const QStyleOption*, QPainter*,
                     const QWidget*) const override {}
    void drawComplexControl(ComplexControl, const QStyleOptionComplex*, QPainter*,
                            const QWidget*) const override {}
};

QStyle* styleNamed(const std::string& name) {
    if (name == "ours")
        return new ApplicationStyle;
    if (name == "nothing drawn")
        return new NoStyle;
    return QStyleFactory::create(QString::fromStdString(name));
}

/** Gives the application a style for as long as it lives. */
class StyleInUse {
public:
    StyleInUse(benchmark::State& state, const std::string& name) {
        QStyle* style = styleNamed(name);
        if (!style) {
            state.SkipWithError(("no style " + name).c_str());
            return;
        }
        QApplication::setStyle(style);
        QApplication::setPalette(ApplicationStyle::palette(ApplicationStyle::Dark));
    }
    ~StyleInUse() { QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion"))); }
};

QWidget* control(int place) {
    if (place < 6)
        return new QPushButton(QStringLiteral("Render"));
    if (place < 12)
        return new QLineEdit(QStringLiteral("plate.exr"));
    if (place < 18) {
        auto* box = new QComboBox;
        box->addItems({QStringLiteral("Linear"), QStringLiteral("Cubic")});
        return box;
    }
    if (place < 24)
        return new QSpinBox;
    if (place < 27)
        return new QSlider(Qt::Horizontal);
    return new QCheckBox(QStringLiteral("Premultiplied"));
}

/** Groups of 30, as the panels of a host have them: a fifth each of buttons, fields, choices and
    numbers, a tenth each of sliders and check boxes. */
class Panel : public QWidget {
public:
    explicit Panel(int count) {
        auto* grid = new QGridLayout(this);
        const int columns = count < 1000 ? 5 : 10;
        for (int i = 0; i < count / 30; ++i)
            grid->addWidget(group(), i / columns, i % columns);
        show();
        QCoreApplication::processEvents();
        repaintAll();
    }

    void repaintAll() {
        update();
        QCoreApplication::processEvents();
    }

private:
    static QWidget* group() {
        auto* group = new QWidget;
        auto* grid = new QGridLayout(group);
        grid->setSpacing(2);
        for (int i = 0; i < 30; ++i) {
            QWidget* widget = control(i);
            widget->setFixedSize(96, 24);
            grid->addWidget(widget, i / 3, i % 3);
        }
        return group;
    }
};

void repaint(benchmark::State& state, const std::string& name) {
    const StyleInUse style(state, name);
    Panel panel(300);
    for (auto _ : state)
        panel.repaintAll();
}

void setHovered(QWidget* widget, bool isHovered) {
    widget->setAttribute(Qt::WA_UnderMouse, isHovered);
    const QPointF inside(5, 5);
    const QPointF outside(-1, -1);
    QHoverEvent event(isHovered ? QEvent::HoverEnter : QEvent::HoverLeave,
                      isHovered ? inside : outside, isHovered ? outside : inside);
    QCoreApplication::sendEvent(widget, &event);
    QCoreApplication::processEvents();
}

void hover(benchmark::State& state, const std::string& name) {
    const StyleInUse style(state, name);
    QWidget window;
    auto* grid = new QGridLayout(&window);
    std::vector<QPushButton*> buttons;
    for (int i = 0; i < 100; ++i) {
        buttons.push_back(new QPushButton(QStringLiteral("Render")));
        buttons.back()->setFixedSize(96, 24);
        grid->addWidget(buttons.back(), i / 10, i % 10);
    }
    window.show();
    QCoreApplication::processEvents();
    for (auto _ : state) {
        for (QPushButton* button : buttons) {
            setHovered(button, true);
            setHovered(button, false);
        }
    }
    state.SetItemsProcessed(std::int64_t(state.iterations()) * std::int64_t(buttons.size()));
}

void switchTheme(benchmark::State& state, int widgets, bool paints) {
    ApplicationStyle::install(ApplicationStyle::Dark);
    {
        Panel panel(widgets);
        bool isDark = true;
        for (auto _ : state) {
            isDark = !isDark;
            ApplicationStyle::install(isDark ? ApplicationStyle::Dark : ApplicationStyle::Light);
            if (paints)
                QCoreApplication::processEvents();
        }
    }
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
}

// As many rules as the sheet of a host that styles every class of widget in every state.
QString sheet(const QString& window, const QString& text) {
    const char* const classes[] = {"QPushButton", "QLineEdit",   "QComboBox",  "QSpinBox",
                                   "QSlider",     "QCheckBox",   "QTabBar",    "QToolButton",
                                   "QMenu",       "QLabel",      "QGroupBox",  "QScrollBar",
                                   "QTreeView",   "QHeaderView", "QTextEdit",  "QProgressBar",
                                   "QDockWidget", "QSplitter",   "QStatusBar", "QToolTip"};
    const char* const states[] = {"",         ":hover",   ":pressed", ":disabled", ":focus",
                                  ":checked", ":enabled", ":off",     ":on",       ":selected"};
    QString rules;
    for (const char* name : classes) {
        for (const char* state : states)
            rules += QStringLiteral("%1%2 { background: %3; color: %4; }\n")
                         .arg(QLatin1String(name), QLatin1String(state), window, text);
    }
    return rules;
}

void switchSheet(benchmark::State& state, int widgets, bool paints) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QString dark = sheet(QStringLiteral("#2d2d2d"), QStringLiteral("#d2d2d2"));
    const QString light = sheet(QStringLiteral("#d8d8d8"), QStringLiteral("#1e1e1e"));
    {
        Panel panel(widgets);
        bool isDark = true;
        for (auto _ : state) {
            isDark = !isDark;
            qApp->setStyleSheet(isDark ? dark : light);
            if (paints)
                QCoreApplication::processEvents();
        }
    }
    qApp->setStyleSheet(QString());
}

} // namespace

void registerBenchmarks() {
    using namespace Kestrel::Bench;

    const auto compare = [](const std::string& work, auto body, const std::vector<double>& ratios) {
        add(work, "ours", [=](benchmark::State& state) { body(state, "ours"); });
        for (std::size_t i = 0; i < std::size(peers); ++i) {
            add(work, peers[i], [=](benchmark::State& state) { body(state, peers[i]); });
            if (i < ratios.size())
                targetRatio(work, peers[i], ratios[i]);
        }
    };
    compare("300 widgets, full repaint", repaint, {1.3, 2, 2});
    compare("a button hovered and left, with paint", hover, {1.2, 2, 2});

    for (const int widgets : {300, 3000}) {
        for (const bool paints : {true, false}) {
            const std::string work = "theme switch, " + std::to_string(widgets) + " widgets" +
                                     (paints ? "" : ", without its repaint");
            add(work, "ours",
                [=](benchmark::State& state) { switchTheme(state, widgets, paints); });
            add(work, "style sheet of 200 rules",
                [=](benchmark::State& state) { switchSheet(state, widgets, paints); });
            // So many widgets fill a screen of 8 million pixels, whose painting costs more than the
            // switch and is the same for both.
            const bool isWindowful = widgets == 3000 && paints;
            targetRatio(work, "style sheet of 200 rules", isWindowful ? 15 : 20);
        }
    }
}
