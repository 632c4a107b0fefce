#include "KeywordChecks.h"

#include "TVLSearchIndex.h"

#include <QSqlQuery>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

int addKeywords(TVLKeywordModel *model, const QModelIndex &parent, const QString &notation,
                int position)
{
    const QPersistentModelIndex place(parent);
    QString title;
    const auto finish = [&] {
        if (!title.isEmpty() && !model->insertItem(model->rowCount(place), place, title))
            qFatal("The keyword '%s' can't be added.", qPrintable(title));
        title.clear();
    };
    for (; position < notation.size(); ++position) {
        const QChar ch = notation.at(position);
        if (ch == u'(') {
            finish();
            position = addKeywords(model, model->index(model->rowCount(place) - 1, 0, place),
                                   notation, position + 1);
        } else if (ch == u' ' || ch == u')') {
            finish();
            if (ch == u')')
                return position;
        } else {
            title.append(ch);
        }
    }
    finish();
    return position;
}

/** The keyword that answers to a title, found by looking at all. */
int plainFindTitle(const TVLKeywordModel *model, const QString &title)
{
    QList<int> ids = model->orderedIds();
    std::sort(ids.begin(), ids.end());
    for (const int id : ids) {
        if (model->title(model->index(id)).compare(title, Qt::CaseInsensitive) == 0)
            return id;
    }
    return -1;
}

QString treeOutOfStep(const TVLKeywordModel *model, const QModelIndex &parent, QSet<int> *seen)
{
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        const int id = int(index.internalId());
        if (seen->contains(id))
            return u"%1 is listed twice"_s.arg(id);
        seen->insert(id);
        if (model->index(id) != index || index.parent() != parent)
            return u"%1 is elsewhere than its list says"_s.arg(id);
        const QString title = model->title(index);
        if (int(model->findTitle(title).internalId()) != plainFindTitle(model, title))
            return u"the title of %1 leads to another keyword"_s.arg(id);
        const QString wrong = treeOutOfStep(model, index, seen);
        if (!wrong.isEmpty())
            return wrong;
    }
    return {};
}

} // namespace

QString keywordText(const TVLKeywordModel *model, const QModelIndex &parent)
{
    QStringList parts;
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        const QString below = keywordText(model, index);
        parts.append(model->title(index) + (below.isEmpty() ? QString() : u'(' + below + u')'));
    }
    return parts.join(u' ');
}

void addKeywords(TVLKeywordModel *model, const QModelIndex &parent, const QString &notation)
{
    addKeywords(model, parent, notation, 0);
}

QModelIndexList keywordsTitled(const TVLKeywordModel *model, const QString &titles)
{
    QModelIndexList indexes;
    const QStringList parts = titles.split(u' ', Qt::SkipEmptyParts);
    for (const QString &title : parts)
        indexes.append(model->findTitle(title));
    return indexes;
}

QString keywordsOutOfStep(const TVLKeywordModel *model, const TVLSearchIndex &searchIndex)
{
    QSet<int> seen;
    const QString wrong = treeOutOfStep(model, QModelIndex(), &seen);
    if (!wrong.isEmpty())
        return wrong;
    const QList<int> ordered = model->orderedIds();
    if (QSet<int>(ordered.begin(), ordered.end()) != seen || ordered.size() != seen.size())
        return u"the list of all keywords isn't that of the tree"_s;
    int free = 1;
    while (seen.contains(free))
        ++free;
    if (model->createId() != free)
        return u"the next identity is %1 instead of %2"_s.arg(model->createId()).arg(free);

    QMap<int, QString> rows;
    QSqlQuery query(searchIndex);
    query.exec(u"SELECT identity, title FROM ProjectKeywords"_s);
    while (query.next())
        rows.insert(query.value(0).toInt(), query.value(1).toString());
    for (const int id : ordered) {
        if (!rows.contains(id) || rows.take(id) != model->title(model->index(id)))
            return u"the search index has another title for %1"_s.arg(id);
    }
    return rows.isEmpty() ? QString() : u"the search index knows keywords that are gone"_s;
}
