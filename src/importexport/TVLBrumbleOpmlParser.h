#pragma once

#include "TvlExport.h"

#include <QModelIndex>
#include <QString>

#include <memory>

class QImage;
class TVLDomDoc;
class TVLHeldItem;
class TVLProjectModel;

/**
 * Makes items of the groups, notes and pictures of a note-board, in the kind of OPML that the
 * program Brumble puts into files and on the clipboard: notes and pictures lie in the text of their
 * elements, as Base64 of what `QDataStream` wrote.
 *
 * Text that isn't well-formed XML, or that TVLDomDoc refuses, changes nothing. While items are made
 * others may remove them; what would have gone into these is left out.
 */
class TVL_EXPORT TVLBrumbleOpmlParser
{
public:
    /** The model isn't owned; without one nothing is read. */
    explicit TVLBrumbleOpmlParser(TVLProjectModel *model);
    ~TVLBrumbleOpmlParser();
    Q_DISABLE_COPY_MOVE(TVLBrumbleOpmlParser)

    /**
     * Puts the items of a file's content into a parent, from a row on, or at its end for a negative
     * row. Pictures aren't put into the Draft. False if nothing was read, as for a row that isn't
     * there; errorString() says why if there is more to say.
     */
    [[nodiscard]] bool parse(const QString &text, int row, const QModelIndex &parent);

    [[nodiscard]] QString errorString() const { return mErrorString; }

private:
    [[nodiscard]] bool read(int row, const TVLHeldItem &parent);
    void readOutlineContents(int row, const TVLHeldItem &parent);
    [[nodiscard]] bool readOutline(int row, const TVLHeldItem &parent);
    [[nodiscard]] bool readImage(const QString &name, int row, const TVLHeldItem &parent);
    [[nodiscard]] bool readNote(const QString &text, int row, const TVLHeldItem &parent);
    [[nodiscard]] bool readGroup(const QString &title, int row, const TVLHeldItem &parent);
    [[nodiscard]] bool createImage(const QString &name, const QImage &image, int row,
                                   const TVLHeldItem &parent);
    [[nodiscard]] bool createNote(const QString &text, const QString &html, int row,
                                  const TVLHeldItem &parent);
    [[nodiscard]] TVLHeldItem createFolder(const QString &title, int row,
                                           const TVLHeldItem &parent);
    [[nodiscard]] QByteArray elementData() const;

    TVLProjectModel *mModel;
    std::unique_ptr<TVLDomDoc> mDom;
    bool mInsideDraft = false;
    bool mSplitFirstLine = false;
    QString mErrorString;
};
