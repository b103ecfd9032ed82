#pragma once

#include <KxUI/kit/Disclosure.h>
#include <KxUI/kit/DisclosureHeader_p.h>
#include <KxUI/kit/EditBracket_p.h>

#include <QPointer>
#include <QVariant>
#include <QVector>

class QVariantAnimation;

namespace Kestrel::UI {

/** The data of a Disclosure, and what moves in it. */
class DisclosurePrivate {
public:
    explicit DisclosurePrivate(Disclosure* disclosure);

    /** Opens or closes this one alone; `revealed` when it is to scroll into sight. False where a
        listener deleted it. */
    bool setOpen(bool open, bool revealed);
    /** The same for those of its group that a click with Alt means. */
    void setAllOpen(bool open);
    /** The group in the order in which it is seen, with this one. */
    QVector<QPointer<Disclosure>> peers() const;
    /** To the header `step` places after in the group. */
    void goToPeer(int step);
    /** The user switches the check box. */
    void editChecked(bool value);
    void storeChecked(bool value);

    void adopt(QWidget* widget);
    /** What AppSettings knows under a key; invalid for nothing. */
    static QVariant remembered(const QString& key);
    void makeContent();
    /** The height of the whole content at a width; 0 without one. */
    int contentHeight(int width) const;
    /** The height of the part of it that is seen now. */
    int seenHeight(int width) const;
    int headerHeight() const;
    bool isMoving() const;
    void place();
    /** The content wants another size, or is gone. */
    void contentChanged();
    /** Ends an animation where it leads to. */
    void settle();

    Disclosure* const q;
    DisclosureHeader* const header;
    QWidget* const viewport; ///< clips the content while it moves
    QPointer<QWidget> content;
    Disclosure::ContentFactory factory;

    QString title;
    QString summary;
    QString group;
    QString settingsKey;
    bool expanded = false;
    bool checkable = false;
    bool checked = true;
    bool modified = false;
    bool exclusive = false;
    bool animated = true;
    double progress = 0.0; ///< of the opening; 1 when it is open
    EditBracket<Disclosure, bool> check;

private:
    int duration() const;
    void move();
    void setProgress(double now);
    void followContentPolicy();
    void giveFocusToHeader();
    void closeOthers();
    void remember() const;
    void reveal();

    QVariantAnimation* m_animation = nullptr; ///< made by the first one that is seen
    bool m_revealing = false;
};

} // namespace Kestrel::UI
