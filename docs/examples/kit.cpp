// A panel of sections that fold, with a row that chooses a channel, below a toolbar that moves its
// less important buttons into a menu when it gets too narrow.

#include <KxUI/kit/BorderLayout.h>
#include <KxUI/kit/ChannelColors.h>
#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/ChoiceButton.h>
#include <KxUI/kit/CollapsibleToolbar.h>
#include <KxUI/kit/Disclosure.h>
#include <KxUI/kit/HorizontalLayout.h>
#include <KxUI/kit/IconFactory.h>
#include <KxUI/kit/PushButton.h>
#include <KxUI/kit/VerticalLayout.h>

#include <QApplication>
#include <QLabel>
#include <QToolButton>

using namespace Kestrel::UI;

namespace {

QWidget* makeTools() {
    auto* tools = new CollapsibleToolbar;
    int priority = 0;
    const QStringList names = {
        "TCStart",      "TCKeyBackward", "TCPlayBackward",     "TCPlayForward",
        "TCKeyForward", "TCEnd",         "FrameSkipBackwards", "FrameSkipForwards"};
    for (const QString& name : names) {
        auto* button = new QToolButton;
        button->setAutoRaise(true);
        button->setIcon(IconFactory::icon(name));
        button->setToolTip(name);
        tools->addOverflowItem(button, name, priority++); // the lowest goes first
    }
    return tools;
}

QWidget* makeCurves() {
    auto* channel = new ChoiceBar;
    const ChannelColors colors = ChannelColors::of(channel->palette());
    const std::pair<const char*, ChannelColors::Channel> channels[] = {
        {"&Master", ChannelColors::Luma},
        {"&Red", ChannelColors::Red},
        {"&Green", ChannelColors::Green},
        {"&Blue", ChannelColors::Blue}};
    for (const auto& [name, color] : channels)
        channel->setChoiceColor(channel->addChoice(QLatin1String(name)), colors.text(color));
    channel->setCurrentIndex(1);
    auto* space = new ChoiceButton;
    for (const char* name : {"Linear", "sRGB", "Rec. 709"})
        space->addChoice(QLatin1String(name));
    space->setCurrentIndex(0);

    auto* content = new QWidget;
    auto* column = new VerticalLayout(VerticalLayout::Margin, VerticalLayout::Gap, content);
    column->addWidget(channel);
    auto* row = new HorizontalLayout;
    row->addWidget(new QLabel(QStringLiteral("Working space")));
    row->addWidget(space, 1);
    column->addLayout(row);
    return content;
}

QWidget* makeSections() {
    auto* sections = new QWidget;
    auto* column = new VerticalLayout(sections);
    auto* gain = new Disclosure;
    gain->setTitle(QStringLiteral("G&ain"));
    gain->setSummary(QStringLiteral("1.2, 1, 0.9")); // while it is closed
    gain->setModified(true);
    gain->setContentFactory([] { return new QLabel(QStringLiteral("made when it is opened")); });
    auto* curves = new Disclosure;
    curves->setTitle(QStringLiteral("&Curves"));
    curves->setCheckable(true); // the check box bypasses them
    curves->setContent(makeCurves());
    curves->setSettingsKey(QStringLiteral("example/curves")); // stays as the user left it
    curves->setExpanded(true);
    auto* reset = new QToolButton;
    reset->setText(QStringLiteral("Reset"));
    reset->setAutoRaise(true);
    curves->addHeaderWidget(reset);
    column->addWidget(gain);
    column->addWidget(curves);
    column->addStretch(1);
    return sections;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    auto* layout = new BorderLayout(&window);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(makeTools(), BorderLayout::North);
    layout->addWidget(makeSections());

    auto* render = new PushButton(QStringLiteral("Render"));
    render->setRole(PushButton::DefaultRole);
    QObject::connect(render, &PushButton::clicked, render, [render] {
        render->setBusy(true); // until the host says that it is over
    });
    layout->addWidget(render, BorderLayout::South);

    window.resize(300, 230);
    window.show();
    return QApplication::exec();
}
