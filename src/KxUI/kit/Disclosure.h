#pragma once

#include <KxUI/Export.h>

#include <QWidget>

#include <functional>
#include <memory>

namespace Kestrel::UI {

class DisclosurePrivate;

/** A section of a panel that folds: a header, and below it a content that is there while the
    section is open. The header shows a title, a check box if it is checkable, a dot if something
    inside is not at its default, what the host summarizes while it is closed, and the host's own
    widgets.

    A click on the header opens and closes; with Alt all of the group. Keys on the header: Space and
    Return open and close, Right opens, Left closes (the other way from right to left), Up and Down
    go to the header before and after in the group, `*` is a click with Alt, Control with Space
    switches the check box. The letter after `&` in the title opens and closes, too.

    Opening is animated as long as the style lets widgets do so: the content has its final size from
    the begin and comes into sight from below the header. Closed at first.
    Interface thread. */
class KXUI_EXPORT Disclosure : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(bool expanded READ isExpanded WRITE setExpanded NOTIFY expandedChanged)
    Q_PROPERTY(QString summary READ summary WRITE setSummary NOTIFY summaryChanged)
    Q_PROPERTY(bool checkable READ isCheckable WRITE setCheckable NOTIFY checkableChanged)
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked NOTIFY toggled USER true)
    Q_PROPERTY(bool modified READ isModified WRITE setModified NOTIFY modifiedChanged)
    Q_PROPERTY(QString group READ group WRITE setGroup NOTIFY groupChanged)
    Q_PROPERTY(bool exclusiveGroup READ exclusiveGroup WRITE setExclusiveGroup NOTIFY
                   exclusiveGroupChanged)
    Q_PROPERTY(QString settingsKey READ settingsKey WRITE setSettingsKey NOTIFY settingsKeyChanged)
    Q_PROPERTY(bool animated READ isAnimated WRITE setAnimated NOTIFY animatedChanged)

public:
    /** Makes the content when it is seen first. */
    using ContentFactory = std::function<QWidget*()>;

    /** A closed section without title and content. */
    explicit Disclosure(QWidget* parent = nullptr);
    ~Disclosure() override;

    /** What the header says; the letter after `&` is its shortcut. */
    QString title() const;
    void setTitle(const QString& title);

    /** Whether the content is there. The focus goes from a content that goes to the header. */
    bool isExpanded() const;

    /** A few words on what is inside, "Gain 1.2, 1, 0.9", which are shown while it is closed. */
    QString summary() const;
    void setSummary(const QString& summary);

    /** Whether the header has a check box, by which users switch on what the section stands for.
        False at first. */
    bool isCheckable() const;
    void setCheckable(bool checkable);
    /** Whether it is checked; true at first. The content can be edited all the same. */
    bool isChecked() const;
    void setChecked(bool checked);

    /** Whether something inside is not at its default; false at first. */
    bool isModified() const;
    void setModified(bool modified);

    /** Takes the content and deletes the one before; null for none. Its vertical size policy
        decides whether an open section grows. */
    void setContent(QWidget* content);
    /** The content; null while there is none, also one that the factory has not made yet. */
    QWidget* content() const;
    /** Gives the content to the caller, hidden and without a parent. */
    QWidget* takeContent();
    /** Has the content made at the first opening, or at once where it is open. What the factory
        gives is taken. It replaces an earlier factory, and is forgotten by setContent(). */
    void setContentFactory(ContentFactory factory);

    /** Takes a widget, a button to reset for example, to the end of the header. Null is ignored. */
    void addHeaderWidget(QWidget* widget);

    /** The sections that belong together, within a window: those of the same name. Without a name,
        as at first, those of the same parent that have none. */
    QString group() const;
    void setGroup(const QString& group);
    /** Whether opening this one closes the others of its group; false at first. */
    bool exclusiveGroup() const;
    void setExclusiveGroup(bool exclusive);

    /** Under which key AppSettings remembers whether it is open; empty, as at first, for not at
        all. Setting one opens or closes as remembered, if it is. */
    QString settingsKey() const;
    void setSettingsKey(const QString& key);

    /** Whether opening and closing is animated; true at first. It never is while nobody sees it, or
        with a content of more than 2,000 pixels. */
    bool isAnimated() const;
    void setAnimated(bool animated);

    /** Whether the user is switching the check box: in the slots between editStarted() and
        editFinished(). */
    bool isEditing() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;

public Q_SLOTS:
    /** Opens or closes. An opened section scrolls into sight if it is in a QScrollArea. */
    void setExpanded(bool expanded);
    /** Opens what is closed and closes what is open. */
    void toggleExpanded();
    /** Opens or closes all of the group; opens only this one where the group is exclusive. */
    void setAllExpanded(bool expanded);
    /** Ends an edit as Escape does; nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** It is open or closed now, by whomever; an animation begins with it. */
    void expandedChanged(bool expanded);
    /** The check box is checked or not, by whomever. */
    void toggled(bool checked);

    /** The user switched the check box: these three in a row. */
    void editStarted();
    void valueEdited(bool checked);
    /** Not accepted: it was taken back. */
    void editFinished(bool accepted);

    /** Setters had an effect. */
    void titleChanged(const QString& title);
    void summaryChanged(const QString& summary);
    void checkableChanged(bool checkable);
    void modifiedChanged(bool modified);
    void groupChanged(const QString& group);
    void exclusiveGroupChanged(bool exclusive);
    void settingsKeyChanged(const QString& key);
    void animatedChanged(bool animated);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    friend class DisclosureHeader;
    friend class DisclosurePrivate;

    const std::unique_ptr<DisclosurePrivate> d;
};

} // namespace Kestrel::UI
