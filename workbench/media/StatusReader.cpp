#include "media/StatusReader.h"

namespace Kestrel::Workbench {

/** What the worker knows of the folder; touched by the worker alone. */
struct StatusReader::Folder {
    std::string path;
    /** Read with the first sequence. */
    FolderNames names;
    bool namesRead = false;
};

StatusReader::StatusReader(QObject* parent)
    : QObject(parent) {
    m_worker.moveToThread(&m_thread);
    m_thread.start();
}

StatusReader::~StatusReader() {
    m_thread.quit();
    m_thread.wait();
}

void StatusReader::setFolder(const std::string& folder) {
    m_folder = std::make_shared<Folder>();
    m_folder->path = folder;
}

void StatusReader::request(int index, const std::string& itemName, const std::string& hashedName) {
    QMetaObject::invokeMethod(
        &m_worker,
        [this, folder = m_folder, index, itemName, hashedName] {
            if (!folder->namesRead && !hashedName.empty()) {
                folder->names = FolderNames::read(folder->path);
                folder->namesRead = true;
            }
            const ItemStatus status =
                readItemStatus(folder->path, folder->names, itemName, hashedName);
            QMetaObject::invokeMethod(
                this,
                [this, folder, index, status] {
                    if (folder == m_folder)
                        emit statusRead(index, status);
                },
                Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

} // namespace Kestrel::Workbench
