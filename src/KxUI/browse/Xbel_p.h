#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** Files of bookmarks (XBEL 1.0) as trees that keep every byte: what is not understood, or not
    touched, is written as it was read. Pure: any thread. */
namespace Kestrel::UI::Xbel {

/** A part of the file. */
struct Node {
    enum class Kind {
        Foreign, ///< anything else, blanks and whole elements alike
        Bookmark,
        Folder,
        Title ///< of the bookmark or folder it lies in
    };

    Kind kind = Kind::Foreign;
    std::string head;           ///< all its bytes, or those of its start tag
    std::vector<Node> children; ///< none for foreign ones
    std::string tail;           ///< its end tag; empty where the start tag is all

    // What the bytes say, in UTF-8 without escapes. Of bookmarks and folders.
    std::string id;
    std::string href;
    std::string title;
    bool hasIdAttribute = false; ///< be it an empty one

    bool isEntry() const { return kind == Kind::Bookmark || kind == Kind::Folder; }
};

/** Why a file is not read to its end. */
enum class Problem {
    None,
    NotWellFormed,
    NotBookmarks, ///< another kind of document
    Forbidden,    ///< declarations of entities, which could grow without bound
    TooLarge      ///< beyond the limits
};

struct Document {
    std::string before; ///< up to the start tag of the root and with it
    std::vector<Node> nodes;
    std::string after; ///< from the root's end tag on
    Problem problem = Problem::None;
    int line = 0; ///< where the problem is, from 1
};

/** What is read of a file at most. */
struct Limits {
    static constexpr std::size_t Bytes = 1024 * 1024;
    static constexpr int Folders = 16;  ///< within each other
    static constexpr int Elements = 64; ///< within each other
    static constexpr int Entries = 4096;
    static constexpr std::size_t Title = 512; ///< bytes; what is behind is kept and not shown
    static constexpr std::size_t Href = 16 * 1024;
};

/** Reads a file. With a problem the document has what came before it, made whole. An empty text is
    a file without bookmarks. Entries without an id of their own get one, which depends on what they
    say and is written with them. */
Document read(std::string_view bytes);

/** The bytes of a document: those that were read where nothing was changed. */
std::string written(const Document& document);

/** An entry of ours.
    @param added  when, as ISO 8601; may be empty */
Node bookmark(const std::string& href, const std::string& title, const std::string& id,
              const std::string& added);
Node folder(const std::string& title, const std::string& id);

/** Changes its title; an empty one goes. */
void setTitle(Node& entry, const std::string& title);

/** Where an entry is: the list that it is in, and its index there. */
struct Place {
    std::vector<Node>* list = nullptr;
    std::size_t index = 0;
    Node* group = nullptr; ///< the folder whose list it is; null at the top

    Node& node() const { return (*list)[index]; }
};
std::optional<Place> find(Document& document, std::string_view id);

/** Takes an entry out, with the blanks before it. */
Node take(const Place& place);

/** Puts an entry into a folder (null for the top) before the sibling of that id, or else behind
    the one of the other id, or else at the end. */
void insert(Document& document, Node entry, std::string_view group, std::string_view before,
            std::string_view behind);

/** The address of a path, each byte of which comes back by pathOf(); what has a scheme stays, and
    is empty where it is not plain ASCII. */
std::string hrefOf(std::string_view path);

/** The path of an address: of `file:` ones the bytes of the system, other schemes as they are.
    Nothing for what is relative, or has a NUL in it. */
std::optional<std::string> pathOf(std::string_view href);

/** Whether it begins with a scheme and `://`. */
bool isAddress(std::string_view text);

/** Text as it stands between tags and in double quotes. */
std::string escaped(std::string_view text);

} // namespace Kestrel::UI::Xbel
