#include "TVLSearchIndex.h"

#include "TVLProjectChecksums.h"
#include "TVLProjectNode.h"
#include "TVLSearchSql_p.h"
#include "TVLSearchedProject.h"
#include "TVLSqlStatement_p.h"

#include <QModelIndex>

using namespace Qt::StringLiterals;

using namespace TVLSearchSql;

namespace {

namespace Statement {

const QString UpdateInt =
    u"UPDATE DocumentIntProperties SET propertyValue = :v WHERE identity = :id AND type = :t"_s;
const QString UpdateConfirmed =
    u"UPDATE DocumentSearchProperties SET confirmed = :c WHERE identity = :id AND type = :t"_s;
const QString UnconfirmFiles =
    u"UPDATE DocumentSearchProperties SET confirmed = 0 WHERE identity = :id AND type IN (2, 3, 4, 9)"_s;
const QString DeleteTexts = u"DELETE FROM DocumentSearchProperties WHERE identity = :i"_s;
const QString DeleteInts = u"DELETE FROM DocumentIntProperties WHERE identity = :i"_s;
const QString SelectConfirmed =
    u"SELECT type FROM DocumentSearchProperties WHERE type = :t AND identity = :i AND confirmed = :c AND propertyValue = :v"_s;
const QString SelectTexts =
    u"SELECT identity, propertyValue FROM DocumentSearchProperties WHERE type = :t AND length(propertyValue) != 0"_s;
const QString UpdateValue =
    u"UPDATE DocumentSearchProperties SET propertyValue = :v WHERE identity = :id AND type = :t"_s;
const QString SelectNonEmpty =
    u"SELECT * FROM DocumentSearchProperties WHERE type = :t AND identity = :i AND length(propertyValue) != 0"_s;
const QString SelectAllNonEmpty =
    u"SELECT type, identity FROM DocumentSearchProperties WHERE type IN (2, 3, 4) AND length(propertyValue) != 0"_s;

} // namespace Statement

bool isText(TVL::DocumentProperty property)
{
    return TVLSearchIndex::stringDocumentProperties().contains(property);
}

bool isLabelOrStatus(TVL::DocumentProperty property)
{
    return property == TVL::LabelProperty || property == TVL::StatusProperty;
}

} // namespace

const QSet<int> &TVLSearchIndex::stringDocumentProperties()
{
    static const QSet<int> properties = {TVL::TitleProperty,          TVL::TextProperty,
                                         TVL::NotesProperty,          TVL::SynopsisProperty,
                                         TVL::CustomMetaDataProperty, TVL::CommentsProperty};
    return properties;
}

// --- Rows of an item

/** The three root folders are never searched. */
bool TVLSearchIndex::isSearchable(const TVLProjectNode *node)
{
    return node && node->mNodeType != TVL::DraftFolder && node->mNodeType != TVL::ResearchFolder
        && node->mNodeType != TVL::TrashFolder;
}

QString TVLSearchIndex::customMetaDataText(const TVLProjectNode *node)
{
    return node ? QStringList(node->mCustomMetaData.values()).join(u' ') : QString();
}

bool TVLSearchIndex::addProjectNode(const TVLProjectNode *node)
{
    return isSearchable(node)
        && addDocumentData(node->mId, node->mTitle, node->mLabelId, node->mStatusId,
                           node->mKeywords);
}

bool TVLSearchIndex::addDocument(const QModelIndex &index)
{
    return addProjectNode(static_cast<const TVLProjectNode *>(index.internalPointer()));
}

bool TVLSearchIndex::addDocumentData(int id, const QString &title, int labelId, int statusId,
                                     const QList<int> &keywordIds)
{
    if (id < 0 || !mInsertText)
        return false;
    for (const int property : stringDocumentProperties()) {
        const bool isTitle = property == TVL::TitleProperty;
        insertText(id, property, isTitle ? title : QString(), isTitle);
    }
    insertInt(id, TVL::LabelProperty, labelId);
    insertInt(id, TVL::StatusProperty, statusId);
    for (const int keywordId : keywordIds)
        addDocumentKeyword(id, keywordId);
    if (mProject)
        mProject->checksums()->forgetHashSums(id);
    mIsModified = true;
    mIsFileMisleading = mIsFileMisleading || mStoredIds.contains(id);
    return true;
}

void TVLSearchIndex::insertText(int id, int property, const QString &text, bool confirmed)
{
    mInsertText->bindValue(u":i"_s, id);
    mInsertText->bindValue(u":t"_s, property);
    mInsertText->bindValue(u":v"_s, textValue(text));
    mInsertText->bindValue(u":c"_s, confirmed);
    succeeded(*mInsertText, mInsertText->exec(), __LINE__);
}

void TVLSearchIndex::insertInt(int id, int property, int value)
{
    mHasDocumentInts = true;
    mInsertInt->bindValue(u":i"_s, id);
    mInsertInt->bindValue(u":t"_s, property);
    mInsertInt->bindValue(u":v"_s, value);
    succeeded(*mInsertInt, mInsertInt->exec(), __LINE__);
}

bool TVLSearchIndex::removeDocument(int id)
{
    createDocumentIndexes();
    // Bound and not run: the texts of what was removed stay to be found, as they always have.
    if (QSqlQuery *texts = prepared(Statement::DeleteTexts, __LINE__))
        texts->bindValue(u":i"_s, id);
    return change(Statement::DeleteInts, {{u":i"_s, id}}, __LINE__);
}

void TVLSearchIndex::forgetTexts(int id)
{
    change(Statement::DeleteTexts, {{u":i"_s, id}}, __LINE__);
    if (mProject)
        mProject->checksums()->forgetHashSums(id);
}

void TVLSearchIndex::setTexts(TVL::DocumentProperty property, const QHash<int, QString> &texts)
{
    QSqlQuery *query = execute(Statement::SelectTexts, {{u":t"_s, int(property)}}, __LINE__);
    if (!query)
        return;
    QHash<int, QString> different = texts;
    while (query->next()) {
        const int id = query->value(0).toInt();
        if (texts.value(id) == query->value(1).toString())
            different.remove(id);
        else
            different.insert(id, texts.value(id));
    }
    query->finish();
    for (auto text = different.cbegin(); text != different.cend(); ++text) {
        query =
            execute(Statement::UpdateValue,
                    {{u":v"_s, textValue(*text)}, {u":id"_s, text.key()}, {u":t"_s, int(property)}},
                    __LINE__);
        if (!query)
            return;
        mIsModified = query->numRowsAffected() > 0 || mIsModified;
        query->finish();
    }
}

// --- Values

void TVLSearchIndex::updatePropertyPrivate(int id, TVL::DocumentProperty property,
                                           const QVariant &value, bool confirmed)
{
    if (isText(property)) {
        change(UpdateText,
               {{u":v"_s, textValue(value.toString())},
                {u":c"_s, confirmed},
                {u":id"_s, id},
                {u":t"_s, int(property)}},
               __LINE__);
    } else if (isLabelOrStatus(property)) {
        createDocumentIndexes();
        change(Statement::UpdateInt, {{u":v"_s, value}, {u":id"_s, id}, {u":t"_s, int(property)}},
               __LINE__);
    }
}

void TVLSearchIndex::updatePropertyNode(const TVLProjectNode *node, TVL::DocumentProperty property,
                                        const QVariant &value, bool confirmed)
{
    if (!node)
        return;
    updatePropertyPrivate(node->mId, property, value, confirmed);
    if (!mProject || !TVL::canConvertToDocType(property))
        return;
    const TVL::DocumentType type = TVL::toDocumentType(property);
    if (confirmed)
        mProject->checksums()->updateHashSumNode(node, type);
    else
        mProject->checksums()->setHashSumNode(node, type, {});
}

void TVLSearchIndex::setConfirmed(int id, TVL::DocumentProperty property, bool confirmed)
{
    if (isText(property))
        change(Statement::UpdateConfirmed,
               {{u":c"_s, confirmed}, {u":id"_s, id}, {u":t"_s, int(property)}}, __LINE__);
}

void TVLSearchIndex::validateProperty(int id, TVL::DocumentProperty property)
{
    setConfirmed(id, property, true);
}

void TVLSearchIndex::invalidateProperty(int id, TVL::DocumentProperty property)
{
    if (!isLabelOrStatus(property)) {
        setConfirmed(id, property, false);
        return;
    }
    // A label or a status is never stale. No statement was made for them, and the log says so.
    QSqlQuery none(*this);
    none.bindValue(u":c"_s, false);
    none.bindValue(u":id"_s, id);
    none.bindValue(u":t"_s, int(property));
    succeeded(none, none.exec(), __LINE__);
}

void TVLSearchIndex::invalidatePropertyNode(const TVLProjectNode *node,
                                            TVL::DocumentProperty property)
{
    if (node)
        invalidateProperty(node->mId, property);
}

void TVLSearchIndex::invalidateDocumentNode(const TVLProjectNode *node, TVL::DocumentType type)
{
    invalidatePropertyNode(node, TVL::toDocumentProperty(type));
}

void TVLSearchIndex::invalidateDocument(int id, TVL::DocumentType type)
{
    invalidateProperty(id, TVL::toDocumentProperty(type));
}

void TVLSearchIndex::invalidateDocuments(int id)
{
    change(Statement::UnconfirmFiles, {{u":id"_s, id}}, __LINE__);
}

bool TVLSearchIndex::isConfirmed(int id, TVL::DocumentProperty property, const QString &text) const
{
    QSqlQuery *query = execute(
        Statement::SelectConfirmed,
        {{u":t"_s, int(property)}, {u":i"_s, id}, {u":c"_s, true}, {u":v"_s, textValue(text)}},
        __LINE__);
    if (!query)
        return false;
    const bool found = query->next();
    query->finish();
    return found;
}

bool TVLSearchIndex::hasText(const TVLProjectNode *node, TVL::DocumentProperty property) const
{
    return !node || node->mId < 0 || hasText(node->mId, property);
}

bool TVLSearchIndex::hasText(int id, TVL::DocumentProperty property) const
{
    QSqlQuery *query =
        execute(Statement::SelectNonEmpty, {{u":t"_s, int(property)}, {u":i"_s, id}}, __LINE__);
    if (!query)
        return false;
    const bool found = query->next();
    query->finish();
    return found;
}

QHash<TVL::DocumentProperty, QSet<int>> TVLSearchIndex::idsWithTexts() const
{
    QHash<TVL::DocumentProperty, QSet<int>> ids;
    TVLSqlStatement rows(*this, mHandle, Statement::SelectAllNonEmpty);
    while (rows.next())
        ids[TVL::DocumentProperty(rows.intAt(0))].insert(rows.intAt(1));
    return ids;
}
