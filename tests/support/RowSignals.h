#pragma once

#include "TVLProjectModel.h"

#include <QObject>
#include <QPersistentModelIndex>

using namespace Qt::StringLiterals;

/**
 * Holds the row signals of a model to their word: each change that is announced comes about, alone,
 * and is told with the indexes that its parents have then.
 */
class RowSignals
{
public:
    explicit RowSignals(const TVLProjectModel *model);

    /** What was wrong so far; empty while nothing is. */
    [[nodiscard]] QString wrong() const
    {
        return mWrong.isEmpty() && mIsOpen ? u"a change was announced and not done"_s : mWrong;
    }

    /** How often the model was reset. */
    [[nodiscard]] int resets() const { return mResets; }

private:
    struct Rows
    {
        QPersistentModelIndex parent;
        int expected = 0;
    };

    void begin(const QModelIndex &from, int removed, const QModelIndex &to, int inserted);
    void beginReset();
    void end(const QModelIndex &from, const QModelIndex &to, const QString &what);
    void check(const QModelIndex &parent, const Rows &rows, const QString &what);

    const TVLProjectModel *mModel;
    QObject mContext;
    bool mIsOpen = false;
    int mResets = 0;
    Rows mFrom;
    Rows mTo;
    QString mWrong;
};
