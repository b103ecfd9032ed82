#pragma once

#include <support/Input.h>

#include <KxUI/kit/EditRest_p.h>

#include <QAccessible>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <memory>

namespace Kestrel::Test {

/** A widget whose value a user edits, and what a user does to it, for checkEditBracket(). What is
    left empty is a thing that the widget does not have. Gestures start from where the widget is not
    being edited. */
template <class Widget>
struct EditedWidget {
    /** At a value from which every gesture below changes it, each call of `move`, too. */
    std::function<std::unique_ptr<Widget>()> make;
    /** The value as one thing, and as a host sets it; at first those of the USER property. */
    std::function<QVariant(const Widget&)> value = [](const Widget& widget) {
        return widget.metaObject()->userProperty().read(&widget);
    };
    std::function<void(Widget&, const QVariant&)> set = [](Widget& widget, const QVariant& wanted) {
        widget.metaObject()->userProperty().write(&widget, wanted);
    };
    /** A value that no gesture leads to. */
    QVariant another;
    /** What takes mouse and keys: the widget, or one of those that it consists of. */
    std::function<QWidget*(Widget&)> part = [](Widget& widget) -> QWidget* { return &widget; };

    /** A drag: a press that changes nothing yet, movements, each further, and the release. */
    std::function<void(Widget&)> press;
    std::function<void(Widget&, int nth)> move;
    std::function<void(Widget&)> release;
    /** A key that changes the value and repeats, and whether it comes before shortcuts. */
    int key = 0;
    bool keyIsOwn = true;
    /** A notch of the wheel, and whether it is for widgets with the focus only. */
    std::function<bool(Widget&)> notch;
    bool wheelNeedsFocus = true;
    /** Something that is an edit by itself: text that was taken, a reset. */
    std::function<void(Widget&)> once;
    /** Whether a screen reader can set the value by the value interface, to `another`. */
    bool assisted = true;
};

/** What a widget told: S and F are the start and the end of an edit (R where it was taken back), E
    a change in between. */
template <class Widget>
class EditLog : public QObject {
public:
    EditLog(Widget& widget, std::function<QVariant(const Widget&)> value) {
        connect(&widget, &Widget::editStarted, this, [this] { text += 'S'; });
        connectEdited(widget, &Widget::valueEdited, std::move(value));
        connect(&widget, &Widget::editFinished, this,
                [this](bool accepted) { text += accepted ? 'F' : 'R'; });
    }

    QString text;
    QVariantList values;          ///< after each E
    std::function<void()> answer; ///< the host's, to each E

private:
    template <class Class, class... Arguments>
    void connectEdited(Widget& widget, void (Class::*signal)(Arguments...),
                       std::function<QVariant(const Widget&)> value) {
        Widget* source = &widget;
        connect(source, signal, this, [this, source, value] {
            text += 'E';
            values += value(*source);
            if (answer)
                answer();
        });
    }
};

template <class Widget>
class EditBracketCheck {
public:
    explicit EditBracketCheck(EditedWidget<Widget> edited)
        : m_edited(std::move(edited)) {}

    void run() {
        UI::EditRest::stopTheClock();
        const std::pair<const char*, std::function<bool()>> steps[] = {
            {"setter", [this] { return setter(); }},
            {"drag", [this] { return !m_edited.press || (drag() && takenBack()); }},
            {"interrupted", [this] { return !m_edited.press || interrupted(); }},
            {"host", [this] { return !m_edited.press || host(); }},
            {"deleted", [this] { return deleted(); }},
            {"key", [this] { return !m_edited.key || key(); }},
            {"wheel", [this] { return !m_edited.notch || wheel(); }},
            {"once", [this] { return !m_edited.once || once(); }},
            {"assisted", [this] { return !m_edited.assisted || assisted(); }},
        };
        for (const auto& [name, step] : steps) {
            if (!step() || QTest::currentTestFailed())
                QFAIL(qPrintable(QStringLiteral("edit bracket: %1: %2").arg(name, m_reason)));
        }
    }

private:
    using Log = EditLog<Widget>;

    std::unique_ptr<Widget> make() {
        auto widget = m_edited.make();
        widget->show();
        widget->grab();
        return widget;
    }

    bool check(bool right, const QString& reason) {
        if (!right && m_reason.isEmpty())
            m_reason = reason;
        return right;
    }

    bool told(const Log& log, const char* pattern) {
        const QRegularExpression whole(QRegularExpression::anchoredPattern(pattern));
        return check(whole.match(log.text).hasMatch(),
                     QStringLiteral("told \"%1\", wanted %2").arg(log.text, pattern));
    }

    void dragAll(Widget& widget) {
        const QPointer<Widget> alive(&widget);
        m_edited.press(widget);
        for (int nth = 1; alive && nth <= 3; ++nth)
            m_edited.move(widget, nth);
        if (alive)
            m_edited.release(widget);
    }

    void pressKey(Widget& widget, QEvent::Type type, bool repeated) {
        QKeyEvent event(type, m_edited.key, Qt::NoModifier, QString(), repeated);
        QCoreApplication::sendEvent(m_edited.part(widget), &event);
    }

    bool escape(Widget& widget) { return sendKey(*m_edited.part(widget), Qt::Key_Escape); }

    bool setter() {
        const auto widget = make();
        const QMetaProperty property = widget->metaObject()->userProperty();
        QSignalSpy changed(widget.get(), property.notifySignal());
        Log log(*widget, m_edited.value);
        m_edited.set(*widget, m_edited.another);
        m_edited.set(*widget, m_edited.another);
        return check(changed.count() == 1, QStringLiteral("a change is not told once")) &&
               told(log, "") &&
               check(!escape(*widget) || !widget->isEditing(),
                     QStringLiteral("editing without a user"));
    }

    bool drag() {
        const auto widget = make();
        Log log(*widget, m_edited.value);
        m_edited.press(*widget);
        if (!check(!widget->isEditing(), QStringLiteral("a press is an edit")))
            return false;
        m_edited.release(*widget);
        if (!told(log, ""))
            return false;
        m_edited.press(*widget);
        m_edited.move(*widget, 1);
        if (!check(widget->isEditing(), QStringLiteral("a movement is no edit")))
            return false;
        m_edited.move(*widget, 2);
        m_edited.release(*widget);
        return told(log, "SE+F") && check(log.values.last() == m_edited.value(*widget),
                                          QStringLiteral("told another value"));
    }

    bool takenBack() {
        for (int way = 0; way < 3; ++way) {
            const auto widget = make();
            QWidget* const part = m_edited.part(*widget);
            Log log(*widget, m_edited.value);
            const QVariant start = m_edited.value(*widget);
            m_edited.press(*widget);
            m_edited.move(*widget, 1);
            bool taken = true;
            if (way == 0)
                taken = escape(*widget);
            else if (way == 1)
                QTest::mousePress(part, Qt::RightButton, {}, part->rect().center());
            else
                widget->cancelEdit();
            const bool right = check(taken, QStringLiteral("Escape passed on")) &&
                               told(log, "SE+R") &&
                               check(log.values.last() == start && m_edited.value(*widget) == start,
                                     QStringLiteral("the start did not come back"));
            m_edited.move(*widget, 2);
            m_edited.release(*widget);
            if (way == 1)
                QTest::mouseRelease(part, Qt::RightButton, {}, part->rect().center());
            if (!right || !told(log, "SE+R") ||
                !check(m_edited.value(*widget) == start, QStringLiteral("moved on")))
                return false;
            widget->cancelEdit();
            if (!told(log, "SE+R"))
                return false;
        }
        return true;
    }

    bool interrupted() {
        const std::function<void(Widget&)> ends[] = {
            [](Widget& widget) { widget.hide(); },
            [](Widget& widget) { widget.setEnabled(false); },
            [this](Widget& widget) {
                QFocusEvent lost(QEvent::FocusOut, Qt::PopupFocusReason);
                QCoreApplication::sendEvent(m_edited.part(widget), &lost);
            },
        };
        for (const auto& interrupt : ends) {
            const auto widget = make();
            Log log(*widget, m_edited.value);
            m_edited.press(*widget);
            m_edited.move(*widget, 1);
            interrupt(*widget);
            if (!told(log, "SE+F") ||
                !check(!widget->isEditing(), QStringLiteral("the edit goes on")))
                return false;
            // The button is still down, which is no new edit.
            const QVariant end = m_edited.value(*widget);
            m_edited.move(*widget, 2);
            escape(*widget);
            widget->setEnabled(true); // or it takes no release
            m_edited.release(*widget);
            if (!told(log, "SE+F") ||
                !check(m_edited.value(*widget) == end, QStringLiteral("moved on after the end")))
                return false;
        }
        return true;
    }

    // An echo changes nothing; another value, set in answer or in any slot, stands.
    bool host() {
        QVariantList silent;
        for (const bool echoes : {false, true}) {
            const auto widget = make();
            Log log(*widget, m_edited.value);
            if (echoes)
                log.answer = [&] { m_edited.set(*widget, m_edited.value(*widget)); };
            dragAll(*widget);
            if (!echoes)
                silent = log.values;
            else if (!check(log.values == silent, QStringLiteral("an echo moves the value")))
                return false;
        }
        const auto widget = make();
        const QVariant start = m_edited.value(*widget);
        Log log(*widget, m_edited.value);
        log.answer = [&] { m_edited.set(*widget, m_edited.another); };
        m_edited.press(*widget);
        m_edited.move(*widget, 1);
        const bool stands = m_edited.value(*widget) == m_edited.another;
        log.answer = nullptr;
        widget->cancelEdit();
        m_edited.release(*widget);
        return check(stands, QStringLiteral("the host's value does not stand")) &&
               told(log, "SE+R") &&
               check(m_edited.value(*widget) == start, QStringLiteral("the start is lost"));
    }

    bool deleted() {
        using Act = std::function<void(Widget&)>;
        Act acts[] = {m_edited.once, nullptr, nullptr};
        if (m_edited.press) {
            acts[1] = [this](Widget& widget) { dragAll(widget); };
            acts[2] = [this](Widget& widget) {
                const QPointer<Widget> alive(&widget);
                m_edited.press(widget);
                m_edited.move(widget, 1);
                if (alive)
                    escape(widget);
            };
        }
        for (const Act& act : acts) {
            for (int nth = 1; act && nth <= 6; ++nth) {
                Widget* widget = make().release();
                const QPointer<Widget> alive(widget);
                int count = 0;
                const auto count1 = [&, nth] {
                    if (++count == nth)
                        delete alive.data();
                };
                QObject::connect(widget, &Widget::editStarted, qApp, count1);
                QObject::connect(widget, &Widget::editFinished, qApp, count1);
                Log log(*widget, m_edited.value);
                log.answer = count1;
                act(*widget);
                delete alive.data();
            }
        }
        return true;
    }

    bool key() {
        const auto widget = make();
        Log log(*widget, m_edited.value);
        QKeyEvent shortcut(QEvent::ShortcutOverride, m_edited.key, Qt::NoModifier);
        shortcut.ignore();
        QCoreApplication::sendEvent(m_edited.part(*widget), &shortcut);
        if (!check(shortcut.isAccepted() || !m_edited.keyIsOwn,
                   QStringLiteral("the key may be a shortcut")))
            return false;
        pressKey(*widget, QEvent::KeyPress, false);
        pressKey(*widget, QEvent::KeyRelease, true);
        pressKey(*widget, QEvent::KeyPress, true);
        if (!told(log, "SE+"))
            return false;
        pressKey(*widget, QEvent::KeyRelease, false);
        return told(log, "SEE+F");
    }

    bool wheel() {
        const auto widget = make();
        const QVariant start = m_edited.value(*widget);
        if (!check(focus(*widget), QStringLiteral("no focus")))
            return false;
        if (m_edited.wheelNeedsFocus) {
            widget->clearFocus();
            const bool taken = m_edited.notch(*widget);
            if (!check(!taken && m_edited.value(*widget) == start,
                       QStringLiteral("the wheel acts without focus")))
                return false;
            widget->setFocus();
        }
        Log log(*widget, m_edited.value);
        m_edited.notch(*widget);
        m_edited.notch(*widget);
        if (!told(log, "SEE"))
            return false;
        UI::EditRest::pass();
        if (!told(log, "SEEF"))
            return false;
        m_edited.notch(*widget);
        widget->clearFocus();
        return told(log, "SEEFSEF");
    }

    bool once() {
        const auto widget = make();
        Log log(*widget, m_edited.value);
        m_edited.once(*widget);
        return told(log, "SEF");
    }

    bool assisted() {
        const auto widget = make();
        Log log(*widget, m_edited.value);
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(widget.get());
        if (!check(seen && seen->valueInterface(), QStringLiteral("no value interface")))
            return false;
        seen->valueInterface()->setCurrentValue(m_edited.another);
        return told(log, "SEF");
    }

    EditedWidget<Widget> m_edited;
    QString m_reason;
};

/** Checks that every edit of the widget is told as edits of every widget are. */
template <class Widget>
void checkEditBracket(EditedWidget<Widget> edited) {
    EditBracketCheck<Widget>(std::move(edited)).run();
}

} // namespace Kestrel::Test
