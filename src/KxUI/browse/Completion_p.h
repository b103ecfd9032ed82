#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <string_view>
#include <vector>

namespace Kestrel::UI {

/** A name that a listing has. */
struct CompletionName {
    std::string_view name; ///< in the system's encoding
    bool isFolder = false;
    bool mayBeFolder = false; ///< nobody knows yet
};

/** The names that a text may be the beginning of. */
struct CompletionMatches {
    struct Row {
        QString text;
        QByteArray name;
        bool isFolder = false;

        bool operator==(const Row& other) const {
            return text == other.text && name == other.name && isFolder == other.isFolder;
        }
    };

    std::vector<Row> rows; ///< the first of them, in the order of the listing
    int count = 0;         ///< of all
    /** What all of them begin with, or, where some begin exactly as the text does, those. */
    QString common;
    std::optional<Row> single; ///< where it is one that `common` stands for
};

/** The names of a listing that begin as `stem` does, whatever its case; those that begin with a dot
    where it does, too. */
CompletionMatches matchesOf(const std::vector<CompletionName>& names, const QString& stem,
                            bool foldersOnly, int limit);

/** Completes paths as they are typed: which folder is to be listed, what its list shows and what
    becomes of the text. No window, no disk, no clock. */
class Completion {
public:
    static constexpr int MostRows = 200;

    enum class Key { Tab, Open, Down, Up, PageDown, PageUp, Return, Escape };

    /** What is to be done after a key. */
    struct Outcome {
        bool isTaken = false;    ///< the key is not for anybody else
        bool wantsNames = false; ///< of folderText(), at once
        bool hasText = false;    ///< text, cursor and name are the field's new ones
        QString text;
        int cursor = 0;
        QByteArray name; ///< the bytes of the component that was put in, where it is a whole one
    };

    /** Whether files are completed; off at first. */
    void setTakesFiles(bool takes) { m_takesFiles = takes; }
    bool takesFiles() const { return m_takesFiles; }

    /** The field has this text, by what was typed. False where nothing can be completed in it. */
    bool edited(const QString& text, int cursor);
    /** The field has this text by another way, or has got the focus: nothing was typed. */
    void reset(const QString& text, int cursor);

    /** What stands before the name that is completed, up to its separator; empty for none. */
    const QString& folderText() const { return m_folder; }

    /** The names of the folder are there. The list opens if it was typed for, unless it would show
        nothing new, or a key waits for them: then what becomes of the text. */
    Outcome setNames(std::vector<CompletionName> names);
    /** Nothing has come for so long that a list would come as a surprise. */
    void giveUp();
    /** The names are those of another folder. */
    void forgetNames();
    bool hasNames() const { return m_hasNames; }

    Outcome press(Key key);
    /** A row was clicked. */
    Outcome choose(int row);
    /** The list is to go, as where the field loses the focus. */
    void close();

    bool isOpen() const { return m_isOpen; }
    const CompletionMatches& matches() const { return m_matches; }
    /** The row that was chosen by a key; -1 for none. */
    int current() const { return m_current; }

private:
    QString stem() const { return m_text.mid(static_cast<int>(m_folder.size()), stemSize()); }
    int stemSize() const { return m_cursor - static_cast<int>(m_folder.size()); }
    void find();
    bool showsNews() const;
    bool open();
    Outcome complete();
    Outcome move(int rows);
    Outcome put(const QString& name, bool isFolder, const QByteArray& bytes);

    QString m_text;
    QString m_folder;
    int m_cursor = 0;
    bool m_takesFiles = false;
    bool m_isTyped = false;    ///< something was, since the focus came
    bool m_isPossible = false; ///< the cursor stands where a name ends
    bool m_opensByItself = false;
    std::optional<Key> m_waiting; ///< a key that came before the names
    std::vector<CompletionName> m_names;
    bool m_hasNames = false;
    CompletionMatches m_matches;
    bool m_isOpen = false;
    int m_current = -1;
};

} // namespace Kestrel::UI
