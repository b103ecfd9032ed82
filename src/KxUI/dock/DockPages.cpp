#include <KxUI/dock/DockPages_p.h>

#include <QChildEvent>
#include <QIcon>
#include <QTabBar>

#include <algorithm>

namespace Kestrel::UI {

namespace {

QIcon tabIcon(const QWidget* page) {
    return page->testAttribute(Qt::WA_SetWindowIcon) ? page->windowIcon() : QIcon();
}

} // namespace

class DockPages::Edit {
public:
    explicit Edit(DockPages& pages)
        : m_pages(pages) {
        ++m_pages.m_edits;
    }
    ~Edit() { --m_pages.m_edits; }
    Edit(const Edit&) = delete;
    Edit& operator=(const Edit&) = delete;

private:
    DockPages& m_pages;
};

DockPages::DockPages(QWidget* parent)
    : QStackedWidget(parent) {
    setLineWidth(0);
    connect(this, &QStackedWidget::widgetRemoved, this, &DockPages::follow);
}

DockPages::~DockPages() {
    // The strip may be gone already.
    disconnect(this, nullptr, this, nullptr);
}

void DockPages::setStrip(QTabBar* strip) {
    m_strip = strip;
    connect(strip, &QTabBar::currentChanged, this, [this](int index) {
        if (m_edits == 0)
            Q_EMIT chosen(index);
    });
}

int DockPages::find(const QWidget* page) const {
    for (int i = 0; i < m_entries.size(); ++i) {
        if (m_entries.at(i).page == page)
            return i;
    }
    return -1;
}

QWidget* DockPages::findNamed(const QString& name) const {
    if (name.isEmpty())
        return nullptr;
    for (const Entry& entry : m_entries) {
        if (entry.alive && entry.page->objectName() == name)
            return entry.page;
    }
    return nullptr;
}

QVector<QPointer<QWidget>> DockPages::list() const {
    QVector<QPointer<QWidget>> pages;
    for (const Entry& entry : m_entries)
        pages.append(entry.alive);
    return pages;
}

bool DockPages::isInStep() const {
    if (m_entries.size() != count() || count() != m_strip->count() ||
        currentIndex() != m_strip->currentIndex())
        return false;
    for (int i = 0; i < count(); ++i) {
        if (m_entries.at(i).page != widget(i))
            return false;
    }
    return true;
}

DockPages* DockPages::holding(const QWidget* page) {
    auto* pages = page ? qobject_cast<DockPages*>(page->parentWidget()) : nullptr;
    return pages && pages->find(page) >= 0 ? pages : nullptr;
}

void DockPages::insert(int index, QWidget* page) {
    const bool isFirst = count() == 0;
    {
        const Edit edit(*this);
        const int at = insertWidget(index, page);
        m_entries.insert(at, {page, page});
        m_strip->insertTab(at, tabIcon(page), page->windowTitle());
    }
    if (isFirst)
        Q_EMIT shown();
}

void DockPages::take(QWidget* page, int next) {
    const int index = find(page);
    if (index < 0)
        return;
    const bool wasCurrent = index == currentIndex();
    if (m_abandoned) {
        m_entries.remove(index);
        removeWidget(page);
        page->hide();
        return;
    }
    {
        const Edit edit(*this);
        // The next one is shown first, so that no other is seen meanwhile, and has the focus when
        // the page had it.
        const int after = index < count() - 1 ? index : count() - 2;
        if (wasCurrent && count() > 1) {
            const int wanted = next >= 0 && next < count() - 1 ? next : after;
            if (wanted != after)
                m_previous = after;
            setCurrentIndex(wanted < index ? wanted : wanted + 1);
            m_strip->setCurrentIndex(currentIndex());
        }
        removeWidget(page);
        page->hide();
    }
    m_entries.remove(index);
    dropFromStrip(index);
    if (wasCurrent)
        Q_EMIT shown();
    Q_EMIT left(page, Leaving::Taken);
}

/** The stack lost a page. */
void DockPages::follow(int index) {
    if (m_edits > 0 || m_abandoned || index < 0 || index >= m_entries.size())
        return;
    const Entry entry = m_entries.takeAt(index);
    const bool isDying = entry.alive.isNull();
    if (isDying)
        m_dying.append(entry.page);
    const bool wasCurrent = index == m_strip->currentIndex();
    m_following = true;
    dropFromStrip(index);
    if (wasCurrent)
        Q_EMIT shown();
    Q_EMIT left(entry.page, isDying ? Leaving::Destroyed : Leaving::Away);
    m_following = false;
}

void DockPages::dropFromStrip(int index) {
    const Edit edit(*this);
    m_strip->removeTab(index);
    m_strip->setCurrentIndex(currentIndex());
}

void DockPages::childEvent(QChildEvent* event) {
    QStackedWidget::childEvent(event);
    // Last of all, since whoever hears of it may destroy this stack.
    if (!event->removed())
        return;
    // It is a widget no more: only its address is compared.
    const auto dying = std::find_if(m_dying.cbegin(), m_dying.cend(),
                                    [event](QWidget* page) { return page == event->child(); });
    if (dying == m_dying.cend())
        return;
    QWidget* page = *dying;
    m_dying.removeOne(page);
    Q_EMIT gone(page);
}

/** Moves a page that is not current. */
void DockPages::shift(int from, int to) {
    QWidget* page = widget(from);
    removeWidget(page);
    insertWidget(to, page);
    m_entries.move(from, to);
    m_strip->moveTab(from, to);
}

void DockPages::move(QWidget* page, int to) {
    const int from = find(page);
    if (from < 0)
        return;
    const int last = count() - 1;
    const int target = to < 0 || to > last ? last : to;
    const Edit edit(*this);
    if (from != currentIndex()) {
        if (from != target)
            shift(from, target);
        return;
    }
    // What is shown never leaves the stack, and keeps its focus: the others go around it.
    for (int i = from; i < target; ++i)
        shift(i + 1, i);
    for (int i = from; i > target; --i)
        shift(i - 1, i);
}

void DockPages::setCurrent(int index) {
    if (index < 0 || index >= count())
        return;
    const bool changes = index != currentIndex();
    if (changes)
        m_previous = std::max(0, currentIndex());
    {
        const Edit edit(*this);
        setCurrentIndex(index);
        m_strip->setCurrentIndex(index);
    }
    if (changes)
        Q_EMIT shown();
}

void DockPages::updateTitles() {
    for (int i = 0; i < count(); ++i) {
        m_strip->setTabText(i, widget(i)->windowTitle());
        m_strip->setTabIcon(i, tabIcon(widget(i)));
    }
}

void DockPages::dropTab(int tab) {
    const Edit edit(*this);
    if (m_strip->count() > count())
        m_strip->removeTab(tab);
}

void DockPages::abandon() {
    m_abandoned = true;
}

} // namespace Kestrel::UI
