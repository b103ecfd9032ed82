#pragma once

#include <KxUI/browse/ThumbnailCache_p.h>
#include <KxUI/files/FileListing.h>
#include <KxUI/kit/Mailbox_p.h>

#include <QObject>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace Kestrel::UI {

class FileListModel;

/** Asks a source for the pictures of the rows that are seen, once they have rested. */
class ThumbnailLoader : public QObject {
    Q_OBJECT

public:
    /** Milliseconds from the last scrolling to asking. */
    static constexpr int Rest = 100;

    explicit ThumbnailLoader(FileListModel* model, QObject* parent = nullptr);
    ~ThumbnailLoader() override;

    void setSource(std::shared_ptr<IThumbnailSource> source);
    const std::shared_ptr<IThumbnailSource>& source() const { return m_source; }

    /** In device pixels. */
    void setSize(const QSize& size);

    /** The rows that are seen, none where the last is before the first; asks for their pictures in a
        while. */
    void setRows(int first, int last);

    /** The picture of an item as far as there is one; also an older one, until a newer has come. */
    QImage picture(const FileListing& listing, int item) const;

    /** Whose picture stands for an item: of a sequence the middle of its frames. */
    static QByteArray pictureFile(const FileListing& listing, int item);

Q_SIGNALS:
    /** picture() has become another one for rows that are seen. */
    void arrived();

protected:
    bool event(QEvent* event) override;

private:
    struct Answered {
        QByteArray path;
        std::int64_t modified = 0;
        QSize size;
        QImage image;
    };
    using Answers = std::vector<Answered>;

    void ask();
    void request(const QByteArray& path, std::int64_t modified);
    void takeAnswers();

    FileListModel* const m_model;
    std::shared_ptr<IThumbnailSource> m_source;
    std::shared_ptr<Mailbox<Answers>> m_box;
    std::map<QByteArray, std::shared_ptr<void>> m_requests; // what was asked for and is seen
    QSize m_size{128, 128};
    QTimer m_rest;
    int m_first = 0;
    int m_last = -1;
};

} // namespace Kestrel::UI
