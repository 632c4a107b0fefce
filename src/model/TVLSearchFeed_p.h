#pragma once

#include "TVL.h"

#include <QList>
#include <QModelIndex>
#include <QSet>
#include <QVariant>

class QTextDocument;
class TVLProjectChecksums;
class TVLProjectModel;
class TVLProjectNode;
class TVLSearchIndex;
class TVLTextDocument;
struct TVLSearchedText;

/**
 * What a model tells its search index and the hashes of its files, and what these two ask it for:
 * the only way from the tree to either.
 *
 * Who changes what is searched of an item tells it here at once. Texts are told when they are
 * written, and only invalidated before: a search then asks for them. A hash vouches for a text, so
 * texts are saved first.
 */
class TVLSearchFeed
{
public:
    /** All of them are to live as long. */
    TVLSearchFeed(const TVLProjectModel *model, TVLSearchIndex *index,
                  TVLProjectChecksums *checksums);
    Q_DISABLE_COPY_MOVE(TVLSearchFeed)

    /** @name Items that come and go @{ */
    /** Fills an empty index with what its file gives; false when that was not all. */
    [[nodiscard]] bool fill(const TVLProjectNode *root);
    /** Takes over of which items the index has texts that aren't empty. */
    void takeHasFlags(const TVLProjectNode *root) const;
    void add(const TVLProjectNode *node);
    /** An item goes, or its id does; the texts of the id stay in the index until it comes again. */
    void forget(const TVLProjectNode *node);
    /** Asks for all of an item anew, and may show a box about a file that can't be read. */
    void rebuild(int id);
    /** @} */

    /** @name What is searched of an item's record @{ */
    void updateValue(const TVLProjectNode *node, TVL::DocumentProperty property,
                     const QVariant &value);
    void updateCustomMetaData(const TVLProjectNode *node);
    void updateKeywords(const TVLProjectNode *node);
    /** All that the index knows of an item but its texts. */
    void updateRecord(const TVLProjectNode *node);
    /** @} */

    /** @name Texts @{ */
    /** A document was edited. */
    void invalidateText(const TVLProjectNode *node, TVL::DocumentType type);
    void invalidateTexts(const TVLProjectNode *node);
    /** Of comments that aren't on disk yet. */
    void updateComments(const TVLProjectNode *node, const QTextDocument *text);
    /** Documents of an item were just written; the others of it are looked at too. */
    void updateTexts(const TVLProjectNode *node, const QList<TVLTextDocument *> &written);
    /** The present texts of an item, which come into memory for it if they aren't there. */
    [[nodiscard]] QList<TVLSearchedText>
    texts(int id, const QList<TVL::DocumentProperty> &properties, bool wasLoaded) const;
    /** @} */

    /** @name Files @{ */
    /** Has checks know that this project writes documents of an item, that it has written them, and
     * that it replaces or removes all files of an item that are recorded. */
    void noteWriting(const TVLProjectNode *node, const QList<TVLTextDocument *> &documents);
    void noteWritten(const TVLProjectNode *node, const QList<TVLTextDocument *> &documents);
    void noteReplacing(const TVLProjectNode *node);
    void forgetChecksums(const TVLProjectNode *node);
    /** @} */

    /** @name Between sessions
     * Without @p force only what has changed.
     * @{ */
    void saveTexts(bool force);
    void saveChecksums(bool force);
    /** Writes texts and, only when they are safe, hashes. */
    void save(bool force);
    /** @} */

private:
    void updateText(const TVLProjectNode *node, const TVLTextDocument *document);
    void refreshText(const TVLProjectNode *node, TVL::DocumentProperty property);
    [[nodiscard]] QString text(const QModelIndex &index, TVL::DocumentProperty property) const;
    [[nodiscard]] bool isAsInFile(const TVLProjectNode *node, TVL::DocumentProperty property,
                                  const QString &text, bool wasLoaded) const;
    [[nodiscard]] bool fileGives(const TVLProjectNode *node, TVL::DocumentProperty property,
                                 const QString &text) const;

    const TVLProjectModel *mModel;
    TVLSearchIndex *mIndex; ///< Also the store of labels and status items.
    TVLProjectChecksums *mChecksums;
    QSet<int> mForgottenIds; ///< Of items that are gone, whose texts the index still has.
};
