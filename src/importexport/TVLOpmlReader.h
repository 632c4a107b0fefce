#pragma once

#include "TvlExport.h"

#include <QModelIndex>
#include <QString>

#include <memory>

class QIODevice;
class TVLDomDoc;
class TVLHeldItem;
class TVLProjectModel;

namespace TVL {

/** What becomes of the notes of an outline. */
enum OpmlImportType : int {
    OpmlTitlesOnly = 0, ///< They are left out.
    OpmlNoteAsSynopsis = 1,
    OpmlNoteAsText = 2, ///< The text, and the synopsis too.
    OpmlNoteAsNotes = 3, ///< The notes, and the synopsis too.
};

} // namespace TVL

/**
 * Makes text items of the outlines of an OPML file or of the nodes of a FreeMind mind map.
 *
 * A file that isn't well-formed XML, is neither of the two, or that TVLDomDoc refuses, changes
 * nothing. What a file of the two has beside titles and notes is passed over. While items are made
 * others may remove them; what would have gone into these is left out.
 */
class TVL_EXPORT TVLOpmlReader
{
public:
    /** What a file is. */
    enum FileKind : int {
        OpmlFile = 0,
        FreeMindFile = 1,
        UnknownFile = 2,
    };

    /** The model isn't owned; without one nothing is read. */
    explicit TVLOpmlReader(TVLProjectModel *model);
    ~TVLOpmlReader();
    Q_DISABLE_COPY_MOVE(TVLOpmlReader)

    /**
     * Puts the items of a file into a parent, from a row on or at the end if there is no such row.
     *
     * With @p createRoot those of an OPML file go into a folder of the file's title; the node in
     * the middle of a mind map makes an item in any case. Without it and with a row, the outlines
     * that lie in no other are in reverse order afterwards, as each is put at that row.
     *
     * False if nothing was read; errorString() says why.
     */
    [[nodiscard]] bool read(const QString &path, TVL::OpmlImportType type, bool createRoot,
                            const QModelIndex &parent, int row);
    /** The same with notes as texts and without a folder around all; @p error takes what went
     * wrong. */
    [[nodiscard]] bool read(const QString &path, const QModelIndex &parent, int row,
                            QString *error);

    /** The steps of read(): takes the content of a file in place of any other. */
    [[nodiscard]] bool load(const QString &path);
    [[nodiscard]] bool load(QIODevice *device);
    /** Makes the items of what was loaded. */
    [[nodiscard]] bool parseFile(const QModelIndex &parent, int row);
    /** Lets go of what was loaded. */
    void clear();

    /** What went wrong in the last read() or load(); empty when nothing did. */
    [[nodiscard]] QString errorString() const { return mErrorString; }
    /** What the last file was. */
    [[nodiscard]] FileKind fileKind() const { return mFileKind; }

private:
    void parseOpml(const TVLHeldItem &parent, int row);
    void parseFreemind(const TVLHeldItem &parent, int row);
    void parseNodes(const QString &path, const TVLHeldItem &parent, int row);
    void parseNode(const TVLHeldItem &parent, int row);
    void parseChildren(const TVLHeldItem &parent);
    [[nodiscard]] TVLHeldItem createRootFolder(const TVLHeldItem &parent, int row);
    [[nodiscard]] TVLHeldItem createNode(const QString &title, QString noteText,
                                         const TVLHeldItem &parent, int row);
    [[nodiscard]] QString nodeTitle() const;
    [[nodiscard]] QString nodeNote() const;
    [[nodiscard]] QString parseFreemindNotes() const;
    [[nodiscard]] QString attribute(const QString &name) const;

    TVLProjectModel *mModel;
    std::unique_ptr<TVLDomDoc> mDom;
    TVL::OpmlImportType mImportType = TVL::OpmlNoteAsText;
    bool mCreateRoot = false;
    FileKind mFileKind = UnknownFile;
    QString mErrorString;
};
