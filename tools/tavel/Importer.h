#pragma once

#include "ImportPlan.h"

#include "TVL.h"
#include "TVLOpmlReader.h"

#include <QStringList>

#include <memory>
#include <vector>

class QTextDocument;
class TVLProjectModel;
class TVLProjectNode;

/**
 * Puts files into a project as new items, at the end of the item that takes them. Each text is
 * written and let go of at once, so that memory holds one file at a time; the items themselves are
 * for the caller to save.
 */
class Importer
{
public:
    /** With a @p separator, each file becomes an item for each part between two of them. */
    Importer(TVLProjectModel *model, TVLProjectNode *target, const QString &separator);

    /** What becomes of the notes of outlines; they become texts if nothing else is said. */
    void setOutlineNotes(TVL::OpmlImportType type) { mOutlineNotes = type; }

    /** The next entry of a plan. False, with a line in @p error, if nothing of it was imported. */
    [[nodiscard]] bool import(const ImportEntry &entry, QString *error);

    [[nodiscard]] int textCount() const { return mTextCount; }
    [[nodiscard]] int folderCount() const { return mFolderCount; }

private:
    struct Part
    {
        QString title;
        std::unique_ptr<QTextDocument> document;
    };

    void importFolder(const ImportEntry &entry);
    [[nodiscard]] bool importText(const ImportEntry &entry, QString *error);
    [[nodiscard]] bool importOutline(const ImportEntry &entry, QString *error);
    void count(const TVLProjectNode *node);
    [[nodiscard]] std::vector<Part> partsOf(const ImportEntry &entry,
                                            std::unique_ptr<QTextDocument> document) const;
    [[nodiscard]] TVLProjectNode *makeItem(TVL::NodeType type, const QString &title);
    [[nodiscard]] QString writeText(TVLProjectNode *node, const QTextDocument &document);
    void removeItems(QList<TVLProjectNode *> nodes);

    TVLProjectModel *mModel;
    QList<TVLProjectNode *> mWay; ///< The items around the next entry, the outermost first.
    QString mSeparator;
    TVL::OpmlImportType mOutlineNotes = TVL::OpmlNoteAsText;
    int mFirstId; ///< No new item has a smaller id.
    int mTextCount = 0;
    int mFolderCount = 0;
};
