#include <KxUI/browse/PathBar_p.h>

#include <KxUI/browse/BusyMark_p.h>
#include <KxUI/browse/CrumbMenu_p.h>

#include <QLabel>
#include <QLineEdit>
#include <QStyle>

#include <algorithm>

namespace Kestrel::UI {

int PathBarPrivate::rowHeight() const {
    return std::max(field->sizeHint().height(), CrumbButton::ArrowWidth + 4);
}

QRect PathBarPrivate::rowRect() const {
    return {0, 0, q->width(), rowHeight()};
}

CrumbButton* PathBarPrivate::add(CrumbButton::Part part) {
    auto* const button = new CrumbButton(part, q);
    button->hide();
    button->installEventFilter(q);
    QObject::connect(button, &QAbstractButton::clicked, q, [this, button] { press(button); });
    return button;
}

void PathBarPrivate::showPath() {
    const bool hadFocus = focused && focused->hasFocus();
    crumbs = PathText::crumbsOf(path);
    while (names.size() < crumbs.size()) {
        names.push_back(add(CrumbButton::Name));
        arrows.push_back(add(CrumbButton::Arrow));
    }
    for (std::size_t i = 0; i < crumbs.size(); ++i) {
        const bool isLast = i + 1 == crumbs.size();
        const int index = static_cast<int>(i);
        names[i]->show(index, crumbs[i].path, crumbs[i].text, isLast);
        arrows[i]->show(index, crumbs[i].path, crumbs[i].text, isLast);
    }
    if (!dots) {
        dots = add(CrumbButton::Dots);
        dotsArrow = add(CrumbButton::Arrow);
    }
    layOut();
    setFocused(crumbs.empty() ? nullptr : names[crumbs.size() - 1]);
    if (hadFocus && focused)
        focused->setFocus();
}

void PathBarPrivate::layOut() {
    const QRect room = rowRect();
    field->setGeometry(room);
    busyMark->move(room.right() - BusyMark::Side - 4,
                   room.center().y() - busyMark->height() / 2 + 1);
    error->setGeometry(0, room.bottom() + 2, q->width(), error->sizeHint().height());

    std::vector<int> widths;
    for (std::size_t i = 0; i < crumbs.size(); ++i)
        widths.push_back(names[i]->sizeHint().width());
    const int inset = 3;
    layout = CrumbLayout::of(widths, CrumbButton::ArrowWidth, CrumbButton::ArrowWidth,
                             room.width() - FreeSpace - 2 * inset);
    const auto place = [&](CrumbButton* button, const CrumbLayout::Span& span) {
        if (!button)
            return;
        button->setGeometry(span.left + inset, room.top() + 2, span.width, room.height() - 4);
        button->setVisible(span.width > 0 && !isEditing);
    };
    for (std::size_t i = 0; i < names.size(); ++i) {
        const bool isUsed = i < crumbs.size();
        place(names[i], isUsed ? layout.crumbs[i] : CrumbLayout::Span());
        place(arrows[i], isUsed ? layout.arrows[i] : CrumbLayout::Span());
        // What has no room for its name tells it.
        if (isUsed)
            names[i]->setToolTip(layout.crumbs[i].width < widths[i] ? crumbs[i].text : QString());
    }
    place(dots, layout.dots);
    place(dotsArrow, layout.dotsArrow);
    if (layout.dots.width > 0) {
        // The arrow behind the dots leads into the last folder that they hide.
        std::size_t last = 1;
        while (last + 1 < crumbs.size() && layout.crumbs[last + 1].width == 0)
            ++last;
        dots->show(static_cast<int>(last), crumbs[last].path, crumbs[last].text, false);
        dotsArrow->show(static_cast<int>(last), crumbs[last].path, crumbs[last].text, false);
    }
}

std::vector<CrumbButton*> PathBarPrivate::row() const {
    std::vector<CrumbButton*> all;
    const auto add = [&all](CrumbButton* button) {
        if (button && !button->isHidden())
            all.push_back(button);
    };
    for (std::size_t i = 0; i < crumbs.size(); ++i) {
        if (i == 1) {
            add(dots);
            add(dotsArrow);
        }
        add(names[i]);
        add(arrows[i]);
    }
    return all;
}

void PathBarPrivate::setFocused(CrumbButton* button) {
    if (focused == button)
        return;
    if (focused)
        focused->setFocusPolicy(Qt::NoFocus);
    focused = button;
    if (focused) {
        focused->setFocusPolicy(Qt::TabFocus);
        QWidget::setTabOrder(field, focused); // in the place of the bar, however late it was made
    }
    if (!isEditing)
        q->setFocusProxy(focused);
}

void PathBarPrivate::goAlong(int key) {
    const std::vector<CrumbButton*> all = row();
    const auto at = std::find(all.begin(), all.end(), focused.data());
    if (all.empty())
        return;
    auto next = at;
    if (key == Qt::Key_Home)
        next = all.begin();
    else if (key == Qt::Key_End || at == all.end())
        next = all.end() - 1;
    else if (key == Qt::Key_Left && at != all.begin())
        --next;
    else if (key == Qt::Key_Right && at + 1 != all.end())
        ++next;
    CrumbButton* const button = *next;
    // The one that has the focus keeps its policy until it has lost it.
    button->setFocusPolicy(Qt::TabFocus);
    button->setFocus(Qt::OtherFocusReason);
    setFocused(button);
}

void PathBarPrivate::press(CrumbButton* button) {
    if (button->part() == CrumbButton::Name)
        go(button->path());
    else if (button->part() == CrumbButton::Arrow)
        openMenu(button);
    else
        openHidden();
}

void PathBarPrivate::openMenu(CrumbButton* button) {
    const auto next = static_cast<std::size_t>(button->index()) + 1;
    auto* const menu =
        new CrumbMenu(button->path(), next < crumbs.size() ? crumbs[next].path : QByteArray(), q);
    menu->onChosen = [this](const QByteArray& chosen) { go(chosen); };
    popUp(menu, button);
}

void PathBarPrivate::openHidden() {
    auto* const menu = new QMenu(q);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setLayoutDirection(Qt::LeftToRight);
    for (std::size_t i = 0; i < crumbs.size(); ++i) {
        if (layout.crumbs[i].width > 0)
            continue;
        QObject::connect(menu->addAction(menuText(crumbs[i].text)), &QAction::triggered, q,
                         [this, path = crumbs[i].path] { go(path); });
    }
    popUp(menu, dots);
}

void PathBarPrivate::popUp(QMenu* menu, CrumbButton* button) {
    const QPointer<CrumbButton> origin(button);
    button->setMenuOpen(true);
    QObject::connect(menu, &QMenu::aboutToHide, q, [origin] {
        if (origin)
            origin->setMenuOpen(false);
    });
    menu->popup(button->mapToGlobal(QPoint(0, button->height() + 1)));
}

} // namespace Kestrel::UI
