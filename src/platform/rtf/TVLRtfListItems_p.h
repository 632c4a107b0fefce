#pragma once

#include <QList>
#include <QPointer>
#include <QTextBlock>
#include <QTextList>

/**
 * The items of a list while it is being filled.
 *
 * A list of Qt marks all of its items as changed whenever one joins, so filling a long one takes
 * time by the square of its length. Here the list only ever knows the last of its items, until
 * all of them are handed to it at the end.
 */
class TVLRtfListItems
{
public:
    [[nodiscard]] QTextList *list() const { return mList; }
    /** Not owned. */
    void setList(QTextList *list) { mList = list; }
    /** To be called for each block right after it has joined the list. */
    void add(const QTextBlock &block);
    /** Gives the list all its items. */
    void finish();

private:
    QPointer<QTextList> mList;
    QList<QTextBlock> mItems;
};
