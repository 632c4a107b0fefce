#pragma once

#include "TVLProjectNode.h"
#include "TestModel.h"

#include <QDateTime>
#include <QObject>
#include <QRandomGenerator>
#include <QStringList>

#include <memory>

using namespace Qt::StringLiterals;

/** How long a test waits for what must come. */
constexpr int PatienceMs = 20'000;

/** A moment that no item has by itself. */
const QDateTime SomeDate(QDate(2019, 5, 6), QTime(7, 8, 9));

/** The path of the models below. Nobody saves there, but reading a text may make a folder. */
[[nodiscard]] QString unsavedProjectPath();

/** An empty model of a format. */
[[nodiscard]] TestModel emptyModel(TVL::FormatVersion version = TVL::FormatVersion18,
                                   bool mobile = false);

/** A blank project in memory. */
[[nodiscard]] TestModel blankModel();

/** The index of the only item inside the Draft of a blank project. */
[[nodiscard]] QModelIndex firstText(const TVLProjectModel *model);

/** Adds an item at the end of its parent, with none of its documents in memory. */
QModelIndex addItem(TVLProjectModel *model, const QModelIndex &parent, TVL::NodeType type,
                    const QString &title = u"Item"_s);

/** Adds a text at the end of its parent, with texts of its own: for `a` these are `a text`,
 * `a card` as its synopsis and `a note`. */
QModelIndex addTextItem(TVLProjectModel *model, const QModelIndex &parent, const QString &title);

/**
 * Adds items at the end of a parent in a notation such as `a b(c d:5)`: titles, for another type
 * than text the number of the type, and what lies in an item in parentheses.
 */
void addTree(TVLProjectModel *model, const QModelIndex &parent, const QString &notation);

/** What lies below an index in that notation, without types. */
[[nodiscard]] QString treeText(const TVLProjectModel *model, const QModelIndex &parent);

/** The first item of a title in the order of the binder; an invalid index for none. */
[[nodiscard]] QModelIndex itemTitled(const TVLProjectModel *model, const QString &title);

/** The items of several titles, which have blanks between them, as itemTitled() finds them. */
[[nodiscard]] QModelIndexList itemsTitled(const TVLProjectModel *model, const QString &titles);

/** Adds random items of every type at random places. The same seed gives the same tree. */
void growRandomTree(TVLProjectModel *model, int nodes, quint32 seed);

/** All items below an index in pre-order, by the plainest of recursions. */
[[nodiscard]] QModelIndexList recursiveWalk(const QAbstractItemModel *model,
                                            const QModelIndex &parent);

/** What is wrong between the tree and the maps by id and uuid; empty when they agree. */
[[nodiscard]] QString mapsOutOfStep(const TVLProjectModel *model);

/** Sets an item's modification time to a day long gone, so that any touch shows. */
void makeOld(const TVLProjectModel *model, const QModelIndex &index);
void makeAllOld(const TVLProjectModel *model);
[[nodiscard]] bool isTouched(const TVLProjectModel *model, const QModelIndex &index);

/** The items whose modification time isn't the one that makeAllOld() set, by id. */
[[nodiscard]] QList<int> touchedIds(const TVLProjectModel *model);

/** Inserts a text at the start of one of an item's documents as an editor would; it can be undone.
 */
void typeText(const TVLProjectModel *model, const QModelIndex &index, const QString &text,
              TVL::DocumentType type = TVL::MainText);

/** Types a text as typeText() does and takes the history of the document away, so that a save may
 * let go of it. */
void typeTextForGood(const TVLProjectModel *model, const QModelIndex &index, const QString &text,
                     TVL::DocumentType type = TVL::MainText);

/** The names of the files of items in a project's folder, in order. */
[[nodiscard]] QStringList documentFiles(const QString &projectPath);

/** Has the objects deleted that wait for it. */
void deleteReleasedObjects();

/** Writes down the signals of a model in the order in which they come, one line for each. */
class SignalLog
{
public:
    explicit SignalLog(const TVLProjectModel *model);

    [[nodiscard]] QStringList lines() const { return mLines; }
    void clear() { mLines.clear(); }

private:
    QObject mContext;
    QStringList mLines;
};
