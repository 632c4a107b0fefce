/*
 * Where in an item a search has found what it looks for. Searches themselves only tell which items
 * they find; their statements are in TVLSearchIndex_queries.cpp.
 */
#include "TVLSearchIndex.h"

#include "TVLCollectionMetaData.h"
#include "TVLSearchWords_p.h"
#include "TVLTextMatcher.h"

#include <QSqlQuery>

using namespace Qt::StringLiterals;

namespace {

const QString SelectTextsOfItem =
    u"SELECT type, propertyValue FROM DocumentSearchProperties WHERE identity = :i ORDER BY type"_s;
const QString SelectTitlesOfItem =
    u"SELECT title FROM %1 JOIN DocumentIntProperties ON DocumentIntProperties.propertyValue = %1.identity AND type = :t WHERE DocumentIntProperties.identity = :i"_s;

/** Empty matches, which an expression may have anywhere, aren't told. */
void appendHits(TVLTextMatcher *matcher, TVL::DocumentProperty property, const QString &text,
                QList<TVLSearchHit> *hits)
{
    if (!matcher->matches(text))
        return;
    qsizetype from = 0;
    while (const auto match = matcher->firstMatch(text, from)) {
        if (match->length > 0)
            hits->append({property, text, match->position, match->length});
        from = match->position + qMax<qsizetype>(match->length, 1);
    }
}

bool isWanted(TVL::DocumentProperty wanted, TVL::DocumentProperty property)
{
    return wanted == TVL::AllProperties || wanted == property;
}

} // namespace

QList<TVLSearchHit> TVLSearchIndex::hits(const TVLCollectionMetaData &collection, int id) const
{
    const auto [words, flags] = tvlSearchWords(collection);
    QList<TVLSearchHit> found;
    if (words.isEmpty())
        return found;
    const TVL::DocumentProperty wanted = collection.mSearchProperty;
    TVLTextMatcher matcher(flags, words);
    if (QSqlQuery *texts = execute(SelectTextsOfItem, {{u":i"_s, id}}, __LINE__)) {
        while (texts->next()) {
            const auto property = TVL::DocumentProperty(texts->value(0).toInt());
            if (isWanted(wanted, property))
                appendHits(&matcher, property, texts->value(1).toString(), &found);
        }
        texts->finish();
    }
    // Each word for itself, as searches look for it.
    TVLTextMatcher titleMatcher(tvlTitleFlags(flags), words);
    const QMap<int, QString> &tables = tvlTitleTables();
    for (auto table = tables.cbegin(); table != tables.cend(); ++table) {
        const auto property = TVL::DocumentProperty(table.key());
        if (!isWanted(wanted, property))
            continue;
        QSqlQuery *titles = execute(SelectTitlesOfItem.arg(table.value()),
                                    {{u":t"_s, table.key()}, {u":i"_s, id}}, __LINE__);
        if (!titles)
            continue;
        while (titles->next())
            appendHits(&titleMatcher, property, titles->value(0).toString(), &found);
        titles->finish();
    }
    return found;
}
