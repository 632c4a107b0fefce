#pragma once

#include "TVLHeldItem_p.h"

class TVLLoadedDocuments;
class TVLProjectModel;

/**
 * Joins texts into the first of them: main texts, notes, synopses, keywords, references, snapshots
 * and what was written in the session. The others stay as they are; to remove them is left to the
 * caller, who learns whether their files are still the only place of some words.
 */
class TVLItemMerger
{
public:
    /** Both are to live as long. */
    TVLItemMerger(TVLProjectModel *model, TVLLoadedDocuments *documents);
    Q_DISABLE_COPY_MOVE(TVLItemMerger)

    enum class Result {
        Nothing, ///< Not all are texts that can be read, or one has gone; no item has changed.
        SomeSnapshots, ///< Not all snapshots could be copied; the first has those that could.
        InMemory, ///< The joined text couldn't be written, or the first item has gone.
        OnDisk,
    };
    /** Items of the model, each once. They may go meanwhile. */
    [[nodiscard]] Result join(const QList<TVLHeldItem> &items);

private:
    struct Texts;

    [[nodiscard]] bool canJoin(const QList<TVLHeldItem> &items) const;
    [[nodiscard]] bool gather(const QList<TVLHeldItem> &items, Texts *merged) const;
    [[nodiscard]] bool takeSnapshots(TVLProjectNode *survivor, QList<int> ids) const;
    [[nodiscard]] bool mergeSnapshots(int id, const QList<int> &sourceIds) const;
    [[nodiscard]] bool takeTexts(const TVLHeldItem &survivor, const Texts &merged);

    TVLProjectModel *mModel;
    TVLLoadedDocuments *mDocuments;
};
