#pragma once

#include "TVLBinderKeyword.h"
#include "TvlExport.h"

#include <QAbstractItemModel>
#include <QColor>
#include <QList>
#include <QMap>
#include <QSet>

#include <set>
#include <utility>

class TVLSearchIndex;

/**
 * A project's keywords: a tree in which each has an identity that stays for its whole life, a title
 * and a colour.
 *
 * Items carry keywords by identity. The search index, if there is one, is told of every keyword
 * that comes, goes or gets another title.
 *
 * An index has column 0 and the keyword's identity as its internal id. Titles are kept with single
 * blanks between their words and none around them. A keyword can't be inserted under a title that
 * is there already, in any case of letters; renaming and loading allow it, and of keywords with the
 * same title the one with the lowest identity answers to it.
 *
 * There are no messages: a failure is a false result or an invalid index.
 */
class TVL_EXPORT TVLKeywordModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role {
        ColorRole = 33, ///< QColor.
    };
    Q_ENUM(Role)

    /** A keyword, in both directions of the tree. */
    struct TVLKeywordItem
    {
        int id = -1;
        QString title;
        QColor color;
        int parentId = -1; ///< -1 at the top level.
        QList<int> children; ///< In display order.
        mutable int rowHint = 0; ///< Where the row is looked for first.
    };

    /** @p searchIndex stays the caller's, may be null, and must outlive the model's last change. */
    explicit TVLKeywordModel(TVLSearchIndex *searchIndex, QObject *parent = nullptr);
    ~TVLKeywordModel() override;
    Q_DISABLE_COPY_MOVE(TVLKeywordModel)

    /** @name The item model @{ */
    using QAbstractItemModel::index;
    using QAbstractItemModel::parent;
    [[nodiscard]] QModelIndex index(int row, int column,
                                    const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex &index) const override;
    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index,
                                int role = Qt::DisplayRole) const override;
    /** The text roles set the title, the decoration and ColorRole the colour. */
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    /** The titles of the model's columns. */
    [[nodiscard]] static const QStringList &headers();
    /** @} */

    /** The index of an identity; an invalid one for an unknown identity. */
    [[nodiscard]] QModelIndex index(int id) const;
    /** Empty for an index of no keyword. */
    [[nodiscard]] QString title(const QModelIndex &index) const;
    /** Invalid for an index of no keyword. */
    [[nodiscard]] QColor color(const QModelIndex &index) const;
    /** The keyword of a title, in any case of letters and with any blanks between the words. */
    [[nodiscard]] QModelIndex findTitle(const QString &title) const;
    /** The identity and all below it. */
    [[nodiscard]] QSet<int> allChidren(int id) const;
    /** All identities in display order, a keyword before its sub-keywords. */
    [[nodiscard]] QList<int> orderedIds() const;
    /** All keywords as a binder lists them: each before those below it, in the order of rows. */
    [[nodiscard]] QList<TVLBinderKeyword> binderKeywords() const;
    /** The lowest identity from 1 upward that is free; -2 if none is. */
    [[nodiscard]] int createId() const;

    /** False for an empty title. Another keyword may have the same. */
    bool setTitle(const QModelIndex &index, const QString &title);
    bool setColor(const QModelIndex &index, const QColor &color);
    /**
     * Makes a keyword with a random colour, at the row or the one nearest to it. False for a title
     * that is empty or taken.
     */
    bool insertItem(int row, const QModelIndex &parent, const QString &title);
    /**
     * Makes a keyword without title and colour as the parent's last, for a caller that knows its
     * identity. One of that identity that is there already is made anew and goes there with its
     * sub-keywords, or stays where it is if it would end up below itself. The result is invalid for
     * a negative identity. An unknown parent stands for the top level.
     */
    QModelIndex addChild(int id, int parentId);
    /** Removes a keyword and all below it, from the items that carry them as well. */
    bool removeItem(const QModelIndex &index);

    /** @name Drag and drop @{ */
    [[nodiscard]] QStringList mimeTypes() const override;
    /** The titles in display order, with U+2028 between them. */
    [[nodiscard]] QMimeData *mimeData(const QModelIndexList &indexes) const override;
    /**
     * A copy makes keywords of the titles that aren't there yet. A move brings keywords together at
     * the row; if one of them isn't there or may not go there, none is moved.
     */
    bool dropMimeData(const QMimeData *mime, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override;
    [[nodiscard]] Qt::DropActions supportedDragActions() const override;
    /** @} */

Q_SIGNALS:
    /** After every change of any kind. */
    void modelChanged();
    /** The keywords are still known, but no longer have a row. Who hears of it can't insert, remove
     * or move keywords: views have been told of one change and not yet seen it. */
    void keywordsAboutToBeRemoved(QSet<int> ids);

private:
    /** The identity of an index; -1 for one that isn't valid or is of another model. */
    [[nodiscard]] int idOf(const QModelIndex &index) const;
    /** Null for an unknown identity. */
    [[nodiscard]] const TVLKeywordItem *findItem(int id) const;
    [[nodiscard]] TVLKeywordItem *findItem(int id);
    /** The identities in a keyword, or at the top level for -1. */
    [[nodiscard]] const QList<int> &childIds(int parentId) const;
    [[nodiscard]] QList<int> &childIds(int parentId);
    [[nodiscard]] int rowOf(const TVLKeywordItem &item) const;
    /** Whether a keyword is the other one or lies in it. */
    [[nodiscard]] bool isInside(int id, int ancestorId) const;

    void insertNew(int row, TVLKeywordItem item);
    void renewItem(int id, int parentId);
    void changeTitle(TVLKeywordItem *item, const QString &title);
    void forgetItem(int id);
    /** Moves a keyword before a row of a parent. */
    void moveItem(int id, int parentId, int row);
    /** Whether keywords may be put there: -1 is the top level. */
    [[nodiscard]] bool isParent(int id) const;
    [[nodiscard]] int rowBehind(int id, int parentId, int otherwise) const;
    void copyTitles(const QStringList &titles, int row, const QModelIndex &parent);
    [[nodiscard]] bool moveTitles(const QStringList &titles, int row, const QModelIndex &parent);
    void enterTitle(const TVLKeywordItem &item);
    void forgetTitle(const TVLKeywordItem &item);
    void announceChange(int id);

    TVLSearchIndex *mSearchIndex; ///< Not owned; may be null.
    QMap<int, TVLKeywordItem> mItems;
    QList<int> mRootItems; ///< In display order.
    /** Each title in the form in which titles are compared, with its keyword. */
    std::set<std::pair<QString, int>> mTitles;
    bool mIsRemoving = false; ///< keywordsAboutToBeRemoved() is on its way.
    std::set<int> mFreedIds; ///< Unused ones below mNextId.
    mutable int mNextId = 1; ///< All from 1 up to here were used at some time.
};
