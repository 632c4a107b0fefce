#include "RowSignals.h"

using namespace Qt::StringLiterals;

RowSignals::RowSignals(const TVLProjectModel *model)
    : mModel(model)
{
    QObject *context = &mContext;
    using Model = TVLProjectModel;
    using Index = QModelIndex;
    const auto on = [&](auto signal, auto slot) { QObject::connect(model, signal, context, slot); };
    on(&Model::rowsAboutToBeInserted, [this](const Index &parent, int first, int last) {
        begin(parent, 0, parent, last - first + 1);
    });
    on(&Model::rowsAboutToBeRemoved, [this](const Index &parent, int first, int last) {
        begin(parent, last - first + 1, parent, 0);
    });
    on(&Model::rowsAboutToBeMoved, [this](const Index &from, int first, int last, const Index &to) {
        begin(from, last - first + 1, to, last - first + 1);
    });
    on(&Model::rowsInserted,
       [this](const Index &parent) { end(parent, parent, u"an insertion"_s); });
    on(&Model::rowsRemoved, [this](const Index &parent) { end(parent, parent, u"a removal"_s); });
    on(&Model::rowsMoved,
       [this](const Index &from, int, int, const Index &to) { end(from, to, u"a move"_s); });
    on(&Model::modelAboutToBeReset, [this] { beginReset(); });
    on(&Model::modelReset, [this] { mIsOpen = false; });
    on(&Model::layoutAboutToBeChanged, [this] { mWrong = u"a change of the layout"_s; });
}

void RowSignals::begin(const QModelIndex &from, int removed, const QModelIndex &to, int inserted)
{
    if (mIsOpen)
        mWrong = u"one change was announced inside another"_s;
    mIsOpen = true;
    const bool isSame = from == to;
    mFrom = {from, mModel->rowCount(from) - removed + (isSame ? inserted : 0)};
    mTo = {to, mModel->rowCount(to) + inserted - (isSame ? removed : 0)};
}

void RowSignals::beginReset()
{
    if (mIsOpen)
        mWrong = u"a reset was announced inside a change"_s;
    mIsOpen = true;
    ++mResets;
}

void RowSignals::end(const QModelIndex &from, const QModelIndex &to, const QString &what)
{
    if (!mIsOpen)
        mWrong = what + u" was not announced"_s;
    mIsOpen = false;
    check(from, mFrom, what);
    check(to, mTo, what);
}

void RowSignals::check(const QModelIndex &parent, const Rows &rows, const QString &what)
{
    const int count = mModel->rowCount(parent);
    if (count != rows.expected)
        mWrong = u"%1 left %2 rows instead of %3"_s.arg(what).arg(count).arg(rows.expected);
    if (parent != rows.parent)
        mWrong = u"%1 was told with a parent in row %2 that is in row %3"_s.arg(what)
                     .arg(parent.row())
                     .arg(rows.parent.row());
}
