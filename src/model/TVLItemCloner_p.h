#pragma once

#include "TVLItemRows_p.h"
#include "TVLNumberedFiles_p.h"

#include <QColor>

#include <functional>

class TVLKeywordModel;
class TVLLoadedDocuments;
class TVLProjectModel;
class TVLProjectNodeProperties;
class TVLSearchFeed;
class TVLSearchIndex;
class TVLSiblingTitles;

/** What is copied of an item. */
struct TVLCloneOptions
{
    bool recursive; ///< The source's descendants come along, with snapshots and files.
    bool checkRules; ///< Whether canClone() is asked.
    bool snapshots;
    bool files; ///< Without it, nothing of the source itself is copied.
};

/**
 * Copies items into a model, out of the same or another one, which is only read, but for unsaved
 * texts of what is copied: these are written first.
 *
 * An item of another project brings what it refers to by ids: keywords, a label and a status item,
 * which are found by their titles or added. They come before the item, so that whoever hears of a
 * new one finds all of it; what lies below it follows with signals of its own. Items may go at each
 * of these signals.
 */
class TVLItemCloner
{
public:
    /** All of them are to live as long. */
    TVLItemCloner(TVLProjectModel *model, TVLItemRows *rows, TVLLoadedDocuments *documents,
                  TVLSearchFeed *feed);
    Q_DISABLE_COPY_MOVE(TVLItemCloner)

    /** @name Onto items that are there
     * As the functions of the model, to which the target belongs.
     * @{ */
    [[nodiscard]] static bool canClone(const QModelIndex &source, const QModelIndex &target);
    bool clone(const QModelIndex &source, const QModelIndex &target,
               const TVLCloneOptions &options);
    bool cloneProjectFiles(const QModelIndex &source, const QModelIndex &target, bool snapshots);
    bool cloneDesktopProperties(const QModelIndex &source, const QModelIndex &target,
                                bool snapshots);
    bool cloneKeywordsAndReferences(const QModelIndex &source, const QModelIndex &target);
    bool cloneLabelsAndStatusItems(const QModelIndex &source, const QModelIndex &target);
    /** @} */

    /** When a record that is taken over marks the project as modified. */
    enum class Marks {
        Always,
        IfReferencesChanged, ///< If the item refers to other keywords or references than before.
    };
    /**
     * Has a node, whose index is given, take over another record, and tells the search index and
     * the model's users. @p take changes the node and emits nothing; when it is false, nobody is
     * told.
     */
    bool takeRecord(TVLProjectNode *node, const QModelIndex &index, Marks marks,
                    const std::function<bool(TVLProjectNode *)> &take);

    /** @name As new items @{ */
    /** Whether an index is of an item that can be copied. */
    [[nodiscard]] static bool isOfAProject(const QModelIndex &index);
    /** Copies of an item side by side; the uuid, if there is one, is for a single copy. */
    QList<TVLHeldItem> insertClones(const TVLInsertPlace &place, int count,
                                    const QModelIndex &source, const TVLCloneOptions &options,
                                    const QUuid &uuid);
    /** A copy without what lies below it, begun with @p begin; rules aren't asked. */
    TVLHeldItem insertCopy(const TVLInsertPlace &place, const QModelIndex &source,
                           const QUuid &uuid, const std::function<void(TVLProjectNode *)> &begin);
    /** Copies with titles that none of their siblings has. */
    QModelIndexList duplicate(const QModelIndexList &indexes, int row, const QModelIndex &parent,
                              bool withChildren, bool checkRules);
    /** Next to the topmost of the items. */
    QModelIndexList duplicate(const QModelIndexList &indexes, bool withChildren);
    /** @} */

private:
    /** The project that is copied from, and what lies in its folder of numbered files. */
    struct Source
    {
        const TVLProjectModel *model;
        TVLNumberedFiles files;
    };
    /** What an item has by ids of its project, by those that another project knows the same by. */
    struct AdoptedIds
    {
        QList<int> keywords;
        int labelId;
        int statusId;
    };
    /** How a new item differs from what it is a copy of. */
    struct NewCopies
    {
        int count = 1;
        QUuid uuid;
        std::function<void(TVLProjectNode *)> begin; ///< What the item is without a copy; or none.
        std::function<void(TVLProjectNode *)> finish; ///< Comes behind the copy; or none.
    };
    struct Copies
    {
        QList<TVLHeldItem> items; ///< None when the source or its place has gone.
        bool areComplete = false;
    };
    /** An item below one that is copied. */
    struct Descendant
    {
        TVLHeldItem item;
        qsizetype parent; ///< The position of its parent in the list; -1 for that which is copied.
    };

    [[nodiscard]] static Source sourceOf(const QModelIndex &source);
    [[nodiscard]] bool canCloneBelow(const QModelIndex &source, const QModelIndex &parent) const;
    bool copyItem(const Source &from, const TVLProjectNode *source, TVLProjectNode *target,
                  const TVLCloneOptions &options, const AdoptedIds *ids);
    bool copyFiles(const Source &from, const TVLProjectNode *source, TVLProjectNode *target);
    static void takeIds(const TVLProjectNodeProperties &source, const AdoptedIds &ids,
                        TVLProjectNode *target);
    Copies insertCopies(const Source &from, const TVLHeldItem &source, const TVLHeldPlace &place,
                        const TVLCloneOptions &options, const NewCopies &copies);
    [[nodiscard]] static QList<Descendant>
    descendantsOf(const Source &from, const TVLProjectNode *top, const TVLProjectNode *excluded);
    bool cloneDescendants(const Source &from, const QList<Descendant> &descendants,
                          const TVLHeldItem &copy, const TVLCloneOptions &options);
    TVLHeldItem duplicateOne(const Source &from, const TVLHeldItem &source,
                             const TVLCloneOptions &options, TVLSiblingTitles *titles,
                             TVLHeldPlace *place);
    AdoptedIds adoptIds(const TVLProjectModel &from, const TVLProjectNodeProperties &item,
                        bool isWanted);
    QList<int> adoptKeywords(const TVLKeywordModel &from, const QList<int> &ids);
    int adoptKeyword(const QString &title, const QColor &color);
    int adoptLabel(const TVLSearchIndex &from, int id);
    int adoptStatusItem(const TVLSearchIndex &from, int id);

    TVLProjectModel *mModel;
    TVLItemRows *mRows;
    TVLLoadedDocuments *mDocuments;
    TVLSearchFeed *mFeed;
};
