#include "TVLSearchIndex.h"

#include "TVLCollectionMetaData.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectNode.h"
#include "TVLSearchSql_p.h"
#include "TVLSearchWords_p.h"
#include "TVLSearchedProject.h"
#include "TVLTextMatcher.h"
#include "TVLTextProof_p.h"

#include <QDebug>
#include <QModelIndex>
#include <QSqlError>
#include <QStringList>

using namespace Qt::StringLiterals;

using namespace TVLSearchSql;

namespace {

const QString SelectUnconfirmed =
    u"SELECT identity, type FROM DocumentSearchProperties WHERE type != :t AND confirmed = :c"_s;
const QString CreateConfirmedIndex =
    u"CREATE INDEX dspConfirmedIndex ON DocumentSearchProperties (confirmed)"_s;
const QString SelectTexts = u"SELECT DISTINCT identity FROM DocumentSearchProperties WHERE "_s;
const QString OfType = u"type is ? AND "_s;
const QString SelectInts =
    u"SELECT DocumentIntProperties.identity FROM %1 JOIN DocumentIntProperties ON DocumentIntProperties.propertyValue = %1.identity AND type = ?  WHERE matchQString(title, ?, ?, ?)"_s;

/** The connection that the end of an update is told to. Not that of any project. */
const QString CommittedConnection = u"searchindex"_s;

/** A function of the database takes 127 arguments; three aren't words. */
constexpr qsizetype MostWordsOfACall = 124;

/** What a statement may have bound in every build of the database. Some take more, at a cost that
 * grows with the square. */
constexpr qsizetype MostValuesOfAStatement = 32'766;

/** The words in as many portions as there are to be calls of the database's function. */
QList<QStringList> portionsOf(const QStringList &words)
{
    QList<QStringList> portions;
    for (qsizetype start = 0; start == 0 || start < words.size(); start += MostWordsOfACall)
        portions.append(words.mid(start, MostWordsOfACall));
    return portions;
}

QString matchCall(const QStringList &words)
{
    return u"matchQString(propertyValue, ?, ?"_s + u", ?"_s.repeated(words.size()) + u')';
}

/** Each row by itself has to match, so the calls for more words than fit into one are joined in
 * the statement and not by what they find. */
QString matchCalls(const QList<QStringList> &portions, int flags)
{
    if (portions.size() == 1)
        return matchCall(portions.constFirst());
    QStringList calls;
    for (const QStringList &portion : portions)
        calls.append(matchCall(portion));
    return u'(' + calls.join(flags & TVLTextMatcher::EveryWord ? u" AND "_s : u" OR "_s) + u')';
}

/** The hash of the file that a text of an item has; empty for none. */
QByteArray fileHash(const TVLProjectChecksums *checksums, const TVLProjectNode *node,
                    TVL::DocumentProperty property)
{
    return node && TVL::canConvertToDocType(property)
        ? checksums->currentHddChecksumNode(node, TVL::toDocumentType(property))
        : QByteArray();
}

void addIdentities(QSqlQuery *query, QSet<int> *ids, int line)
{
    while (query->next())
        ids->insert(query->value(0).toInt());
    succeeded(*query, !query->lastError().isValid(), line);
    query->finish();
}

} // namespace

// --- Searching

QList<int> TVLSearchIndex::indexes(const TVLCollectionMetaData &collection)
{
    const auto [words, flags] = tvlSearchWords(collection);
    if (words.isEmpty())
        return {};
    const TVL::DocumentProperty property = collection.mSearchProperty;
    validateIndexes(nullptr);

    QSet<int> ids;
    if (property == TVL::AllProperties || stringDocumentProperties().contains(property))
        ids.unite(searchTextProperties(words, flags, property));
    if (property == TVL::AllProperties || tvlTitleTables().contains(property))
        ids.unite(searchIntProperties(words, flags, property));
    return ids.values();
}

QSet<int> TVLSearchIndex::searchTextProperties(const QStringList &words, int flags,
                                               TVL::DocumentProperty property) const
{
    const bool hasType = property != TVL::AllProperties;
    const QList<QStringList> portions = portionsOf(words);
    QSet<int> ids;
    if ((hasType ? 1 : 0) + 2 * portions.size() + words.size() > MostValuesOfAStatement) {
        qCritical() << "sql error" << SelectTexts << "too many words" << __LINE__;
        return ids;
    }
    QSqlQuery query(*this);
    query.setForwardOnly(true);
    if (!prepare(&query, SelectTexts + (hasType ? OfType : QString()) + matchCalls(portions, flags),
                 __LINE__))
        return ids;
    if (hasType)
        query.addBindValue(int(property));
    for (const QStringList &portion : portions) {
        query.addBindValue(flags);
        query.addBindValue(int(portion.size()));
        for (const QString &word : portion)
            query.addBindValue(textValue(word));
    }
    if (succeeded(query, query.exec(), __LINE__))
        addIdentities(&query, &ids, __LINE__);
    return ids;
}

QSet<int> TVLSearchIndex::searchIntProperties(const QStringList &words, int flags,
                                              TVL::DocumentProperty property) const
{
    createDocumentIndexes();
    const int wordFlags = tvlTitleFlags(flags);
    QSet<int> ids;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QSet<int> ofWord = documentsOfTitle(words.at(i), wordFlags, property);
        if (i > 0 && (flags & TVLTextMatcher::EveryWord))
            ids.intersect(ofWord);
        else
            ids.unite(ofWord);
    }
    return ids;
}

/** The items of which a keyword, the label or the status has a title that a word matches. */
QSet<int> TVLSearchIndex::documentsOfTitle(const QString &word, int flags,
                                           TVL::DocumentProperty property) const
{
    QSet<int> ids;
    const QMap<int, QString> &tables = tvlTitleTables();
    for (auto table = tables.cbegin(); table != tables.cend(); ++table) {
        if (property != TVL::AllProperties && property != table.key())
            continue;
        QSqlQuery query(*this);
        query.setForwardOnly(true);
        if (!prepare(&query, SelectInts.arg(table.value()), __LINE__))
            continue;
        query.addBindValue(table.key());
        query.addBindValue(flags);
        query.addBindValue(1);
        query.addBindValue(textValue(word));
        if (succeeded(query, query.exec(), __LINE__))
            addIdentities(&query, &ids, __LINE__);
    }
    return ids;
}

// --- Keeping texts up to date

QMap<int, QList<TVL::DocumentProperty>> TVLSearchIndex::notConfirmedIndexes() const
{
    QMap<int, QList<TVL::DocumentProperty>> properties;
    QSqlQuery *query = execute(SelectUnconfirmed,
                               {{u":t"_s, int(TVL::TitleProperty)}, {u":c"_s, false}}, __LINE__);
    if (!query)
        return properties;
    while (query->next())
        properties[query->value(0).toInt()].append(TVL::DocumentProperty(query->value(1).toInt()));
    query->finish();
    return properties;
}

void TVLSearchIndex::validateIndexes(QProgressDialog *progress)
{
    if (!mProject)
        return;
    const QMap<int, QList<TVL::DocumentProperty>> stale = notConfirmedIndexes();
    for (auto item = stale.cbegin(); item != stale.cend(); ++item) {
        QList<TVL::DocumentProperty> properties = item.value();
        // Another text may name other comments of a file that is what it was.
        if (properties.contains(TVL::TextProperty) && !properties.contains(TVL::CommentsProperty)
            && !mProject->checksums()->loadedChecksum(item.key(), TVL::CommentsFile).isEmpty())
            properties.append(TVL::CommentsProperty);
        updateIndexProperties(mProject->searchedIndex(item.key()), properties, progress != nullptr);
    }
    // Whether a text is confirmed stands behind it, so each search would go through all texts once
    // more. Until all are confirmed there would be nothing but work in keeping the index.
    if (!std::exchange(mHasConfirmedIndex, true)) {
        QSqlQuery query(*this);
        (void)run(&query, CreateConfirmedIndex, __LINE__);
    }
}

void TVLSearchIndex::updateIndexProperties(const QModelIndex &index,
                                           const QList<TVL::DocumentProperty> &properties,
                                           bool useChecksums)
{
    const TVLProjectNode *node = mProject ? mProject->searchedNode(index) : nullptr;
    if (properties.isEmpty() || !node || node->mId < 0)
        return;
    if (useChecksums && !canLookIntoDocs())
        return;

    // Stays open; see the class. With one open this is refused, and the changes belong to that.
    transaction();
    const int id = node->mId;
    QList<TVL::DocumentProperty> asked;
    for (const TVL::DocumentProperty property : properties) {
        if (useChecksums && isUpToDate(index, property))
            validateProperty(id, property);
        else if (stringDocumentProperties().contains(property))
            asked.append(property);
        else
            updatePropertyPrivate(id, property, u""_s, true);
    }
    if (!asked.isEmpty())
        refreshTexts(index, asked);
    QSqlDatabase::database(CommittedConnection, true).commit();
}

/** Takes texts as they are now, each with the hash of its file if that is the file's text. */
void TVLSearchIndex::refreshTexts(const QModelIndex &index,
                                  const QList<TVL::DocumentProperty> &properties)
{
    TVLProjectChecksums *checksums = mProject->checksums();
    const TVLProjectNode *asked = mProject->searchedNode(index);
    const int id = asked->mId;
    QList<QByteArray> hashes;
    for (const TVL::DocumentProperty property : properties)
        hashes.append(fileHash(checksums, asked, property));
    const QList<TVLSearchedText> texts = mProject->searchedFileTexts(index, properties);
    // Found anew: a box about a file that can't be read runs the event loop.
    const TVLProjectNode *node = mProject->searchedNode(id);
    for (qsizetype i = 0; i < properties.size(); ++i) {
        const TVL::DocumentProperty property = properties.at(i);
        const TVLSearchedText text = texts.value(i);
        updatePropertyPrivate(id, property, text.text, true);
        // A hash that is equal before and behind the reading is that of what was read. Comments
        // that the text doesn't know of are read when it does.
        const bool isWhole = property != TVL::CommentsProperty || !text.text.isEmpty();
        const bool isOfFile =
            text.isOfFile && isWhole && hashes.at(i) == fileHash(checksums, node, property);
        if (TVL::canConvertToDocType(property))
            checksums->setHashSumNode(node, TVL::toDocumentType(property),
                                      isOfFile ? hashes.at(i) : QByteArray());
    }
}

/** Whether a text that is stored is still that of its file, and not being edited. */
bool TVLSearchIndex::isUpToDate(const QModelIndex &index, TVL::DocumentProperty property) const
{
    const int id = mProject->searchedNode(index)->mId;
    const bool isEmpty = !hasText(id, property);
    if (!TVL::canConvertToDocType(property) || mProject->referenced(index)
        || !tvlIsVouchedFor(*mProject->checksums(), id, property, isEmpty))
        return false;
    return property != TVL::CommentsProperty || isEmpty || isUpToDate(index, TVL::TextProperty);
}
