#pragma once

#include "TVLKeywordModel.h"

class TVLSearchIndex;

/**
 * The keywords below an index in a notation such as `a b(c d)`: titles, with the sub-keywords in
 * parentheses.
 */
[[nodiscard]] QString keywordText(const TVLKeywordModel *model,
                                  const QModelIndex &parent = QModelIndex());

/** Adds keywords at the end of a parent in that notation. */
void addKeywords(TVLKeywordModel *model, const QModelIndex &parent, const QString &notation);

/** The indexes of titles with blanks between them. */
[[nodiscard]] QModelIndexList keywordsTitled(const TVLKeywordModel *model, const QString &titles);

/** What is wrong with a keyword model's tree, titles and rows of the search index; empty when all
 * agree. */
[[nodiscard]] QString keywordsOutOfStep(const TVLKeywordModel *model,
                                        const TVLSearchIndex &searchIndex);
