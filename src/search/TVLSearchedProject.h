#pragma once

#include "TVL.h"

#include <QList>
#include <QModelIndex>
#include <QStringList>

class TVLProjectChecksums;
class TVLProjectNode;

/** A text of an item. */
struct TVLSearchedText
{
    QString text;
    /** Whether its file holds this very text, so that the file's hash tells when it is outdated. */
    bool isOfFile = false;
};

/**
 * What the search index asks a project for: the texts of items, when it has none that it can trust.
 * TVLProjectModel implements it.
 */
class TVL_EXPORT TVLSearchedProject
{
public:
    TVLSearchedProject();
    virtual ~TVLSearchedProject();
    Q_DISABLE_COPY_MOVE(TVLSearchedProject)

    /** The project's folder. */
    [[nodiscard]] virtual QString searchedPath() const = 0;
    /** Hashes of the texts on disk; never null. They belong to the project. */
    [[nodiscard]] virtual TVLProjectChecksums *checksums() const = 0;
    /** The record of an id or of an index, null when no item has it. It may go in each question for
     * texts. */
    [[nodiscard]] virtual const TVLProjectNode *searchedNode(int id) const = 0;
    [[nodiscard]] virtual const TVLProjectNode *searchedNode(const QModelIndex &index) const = 0;
    /** The index of an id; an invalid one for an id that no item has. */
    [[nodiscard]] virtual QModelIndex searchedIndex(int id) const = 0;
    /** Whether a document of the item is in memory, where it may differ from the one on disk. */
    [[nodiscard]] virtual bool referenced(const QModelIndex &index) const = 0;
    /** The present texts of properties of an item, one for each in their order; empty for one that
     * has no text. All that a search needs of an item is asked for at once. */
    [[nodiscard]] virtual QStringList
    searchedTexts(const QModelIndex &index,
                  const QList<TVL::DocumentProperty> &properties) const = 0;
    /** searchedTexts() with what the project knows of their files; unless it is overridden, it
     * knows nothing. */
    [[nodiscard]] virtual QList<TVLSearchedText>
    searchedFileTexts(const QModelIndex &index,
                      const QList<TVL::DocumentProperty> &properties) const;
};
