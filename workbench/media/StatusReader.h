#pragma once

#include "media/ItemStatus.h"

#include <QObject>
#include <QThread>

#include <memory>

namespace Kestrel::Workbench {

/** Reads item statuses on a thread of its own, so that a slow file system holds up nobody. */
class StatusReader : public QObject {
    Q_OBJECT

public:
    explicit StatusReader(QObject* parent = nullptr);
    ~StatusReader() override;

    /** Begins with another folder; answers to earlier requests are dropped. */
    void setFolder(const std::string& folder);

    /** Asks for one item; statusRead() answers. */
    void request(int index, const std::string& itemName, const std::string& hashedName);

signals:
    void statusRead(int index, const Kestrel::Workbench::ItemStatus& status);

private:
    struct Folder;

    QThread m_thread;
    /** Lives on the thread; receives the work. */
    QObject m_worker;
    std::shared_ptr<Folder> m_folder;
};

} // namespace Kestrel::Workbench
