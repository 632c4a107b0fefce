#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLCollectionList_p.h"
#include "TVLDoors.h"
#include "TVLHeldItem_p.h"
#include "TVLItemRows_p.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"

#include <QImage>
#include <QTextCursor>
#include <QUrl>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

TVLProjectNode *TVLProjectModel::createProjectNode(TVLProjectNode *parent, int row, QUuid uuid,
                                                   int id)
{
    if (uuid.isNull() || d->mUuidMap.contains(uuid))
        uuid = tvlNewUuid();
    if (id == -1 || d->mIdMap.contains(id))
        id = d->givesIds() ? findNextNodeId() : -1;
    if (id != -1)
        d->mIdMap.insert(id, uuid);
    auto *node = row < 0 ? new TVLProjectNode({id, uuid}, parent)
                         : new TVLProjectNode({id, uuid}, parent, row);
    d->mUuidMap.insert(uuid, node);
    return node;
}

/** Whether new items get ids; those of newer formats have uuids alone. */
bool TVLProjectModelPrivate::givesIds() const
{
    return q->formatVersion() <= TVL::FormatVersion18 && !mMobileProject;
}

// --- Items with a given content

/** What a new item is to be; more than one are all the same. */
struct TVLProjectModelPrivate::NewItem
{
    TVL::NodeType type;
    QString extension;
    QString title; ///< Empty for "Untitled".
    std::function<void(TVLProjectNode *)> fill; ///< Comes with the documents in memory; or none.
};

QList<TVLHeldItem> TVLProjectModelPrivate::insertNewItems(int row, const QModelIndex &parent,
                                                          int count, const NewItem &item)
{
    const TVLInsertPlace place = mRows->insertPlace(parent, row);
    QList<std::pair<QString, QStringList>> failures;
    const auto make = [&](int number) {
        TVLProjectNode *node = mRows->createDefaultNode(place.parent, place.row + number, QUuid());
        node->mFileExtension = item.extension;
        node->mNodeType = item.type;
        node->mTitle = item.title.isEmpty() ? TVLProjectModel::trUntitledTitle() : item.title;
        mSearchFeed->add(node);
        QStringList errors;
        if (!mDocuments->loadQuietly(node, &errors))
            failures.append({node->mTitle, errors});
        if (item.fill)
            item.fill(node);
        return node;
    };
    const QList<TVLHeldItem> items = mRows->insert(place, count, make);
    // Only now: a file that is in the way and can't be read is told in a box, where views go on.
    for (const auto &[title, errors] : std::as_const(failures))
        TVLLoadedDocuments::showErrors(title, errors);
    return items;
}

TVLProjectNode *TVLProjectModel::insertNode(int row, const QModelIndex &parent, TVL::NodeType type,
                                            const QString &extension, const QString &title)
{
    return d->insertNewItems(row, parent, 1, {type, extension, title, {}}).constFirst().node();
}

QList<TVLProjectNode *> TVLProjectModel::insertMultipleNodes(int row, const QModelIndex &parent,
                                                             TVL::NodeType type,
                                                             const QString &extension,
                                                             const QString &title, int count)
{
    QList<TVLProjectNode *> nodes;
    const QList<TVLHeldItem> items =
        d->insertNewItems(row, parent, std::max(count, 1), {type, extension, title, {}});
    for (const TVLHeldItem &item : items)
        nodes.append(item.node());
    nodes.removeAll(nullptr);
    return nodes;
}

QList<QModelIndex> TVLProjectModel::insertMultipleTextNodes(int row, const QModelIndex &parent,
                                                            int count)
{
    const QList<TVLProjectNode *> nodes =
        insertMultipleNodes(row, parent, TVL::Text, u"rtf"_s, QString(), count);
    QList<QModelIndex> indexes;
    indexes.reserve(nodes.size());
    for (const TVLProjectNode *node : nodes)
        indexes.append(createIndex(node));
    return indexes;
}

QModelIndex TVLProjectModelPrivate::insertWithTexts(int row, const QModelIndex &parent,
                                                    const NewItem &item, const NewTexts &texts)
{
    NewItem filled = item;
    bool hasWords = false;
    filled.fill = [&](TVLProjectNode *node) {
        if (item.fill)
            item.fill(node);
        for (const auto &[type, text] : texts)
            hasWords = TVLLoadedDocuments::fill(node, type, text) || hasWords;
    };
    const TVLHeldItem inserted = insertNewItems(row, parent, 1, filled).constFirst();
    if (hasWords) {
        q->scheduleDocTextChange(inserted.index());
        q->markProjectAsModified(true);
    }
    return inserted.index();
}

QModelIndex TVLProjectModel::insertTextNode(int row, const QModelIndex &parent,
                                            const QString &title, const QString &text,
                                            const QString &synopsis, const QString &notes)
{
    return d->insertWithTexts(
        row, parent, {TVL::Text, u"rtf"_s, title, {}},
        {{TVL::MainText, text}, {TVL::SynopsisText, synopsis}, {TVL::NotesText, notes}});
}

QModelIndex TVLProjectModel::insertImageNode(int row, const QModelIndex &parent,
                                             const QString &title, const QImage &image,
                                             const QString &synopsis, const QString &notes)
{
    if (!image.isNull() && !d->givesIds())
        return {};
    const auto addImage = [&](TVLProjectNode *node) {
        if (image.isNull())
            return;
        (void)TVLProjectFolderFormat::writeImageFile(d->mPath, node->mId, u"png"_s, image);
        node->mShowSynopsisImage = true;
    };
    return d->insertWithTexts(row, parent, {TVL::Image, u"png"_s, title, addImage},
                              {{TVL::SynopsisText, synopsis}, {TVL::NotesText, notes}});
}

QModelIndex TVLProjectModel::insertUserFolder(int row, const QModelIndex &parent,
                                              const QString &title)
{
    return createIndex(insertNode(row, parent, TVL::Folder, QString(), title));
}

QModelIndex TVLProjectModel::createSyncConflictsFolder()
{
    const QModelIndex research = researchFolder();
    const auto setIcon = [](TVLProjectNode *node) { node->mIconFileName = u"Warning.tiff"_s; };
    const TVLHeldItem folder =
        d->insertNewItems(research.isValid() ? research.row() + 1 : -1, rootIndex(), 1,
                          {TVL::Folder, QString(), tr("Sync Conflicts"), setIcon})
            .constFirst();
    tvlMarkAndAnnounce(this, folder.index());
    return folder.index();
}

TVLProjectNode *TVLProjectModel::createUrlNode(const QUrl &url, int row, const QModelIndex &parent)
{
    const TVLInsertPlace place = d->mRows->insertPlace(parent, row);
    const auto make = [&](int) {
        TVLProjectNode *node = d->mRows->createDefaultNode(place.parent, place.row, QUuid());
        node->mNodeType = TVL::WebArchive;
        node->mTitle = url.host();
        node->mOriginalUrl = url.toString();
        node->mHasText = true;
        d->mSearchFeed->add(node);
        return node;
    };
    return d->mRows->insert(place, 1, make).constFirst().node();
}

/** Makes the flags of a record that has come from elsewhere agree with what the project has: one
 * template folder, and the list of favorites. */
void TVLProjectModelPrivate::enterFlags(TVLProjectNode *node)
{
    if (node->mUuid != mTemplateFolderUuid)
        node->mIsTemplateFolder = false;
    mCollectionList->enterFlag(node);
}

TVLProjectNode *
TVLProjectModel::insertNodeWithProperties(int row, const QModelIndex &parent,
                                          const TVLProjectNodeProperties &properties)
{
    const TVLInsertPlace place = d->mRows->insertPlace(parent, row);
    const auto make = [&](int) {
        TVLProjectNode *node =
            createProjectNode(place.parent, place.row, properties.mUuid, properties.mId);
        node->applyAllPreserveIDs(properties);
        d->enterFlags(node);
        d->mSearchFeed->add(node);
        return node;
    };
    return d->mRows->insert(place, 1, make).constFirst().node();
}

QModelIndex TVLProjectModel::insertRowWithProperties(int row, const QModelIndex &parent,
                                                     const TVLProjectNodeProperties &properties)
{
    return createIndex(insertNodeWithProperties(row, parent, properties));
}

// --- Rows

QList<TVLHeldItem>
TVLProjectModelPrivate::insertBlankItems(const TVLInsertPlace &place, int count, const QUuid &uuid,
                                         const std::function<void(TVLProjectNode *)> &finish)
{
    const auto make = [&](int) {
        TVLProjectNode *node = mRows->createDefaultNode(place.parent, place.row, uuid);
        if (finish)
            finish(node);
        mSearchFeed->add(node);
        return node;
    };
    const QList<TVLHeldItem> items = mRows->insert(place, count, make);
    q->markProjectAsModified(true);
    return items;
}

bool TVLProjectModel::insertRowsAndClone(int row, int count, const QModelIndex &parent,
                                         const QModelIndex &source, CloneFlags flags)
{
    if (!d->mRows->canInsert(row, count, parent))
        return false;
    const TVLInsertPlace place = d->mRows->insertPlace(parent, row);
    return source.isValid() ? !d->insertClones(place, count, source, flags, QUuid()).isEmpty()
                            : !d->insertBlankItems(place, count, QUuid()).isEmpty();
}

QModelIndex TVLProjectModel::insertRowAndClone(int row, const QModelIndex &parent,
                                               const QModelIndex &source, CloneFlags flags,
                                               const QUuid &uuid)
{
    if (!d->mRows->canInsert(row, 1, parent))
        return {};
    const TVLInsertPlace place = d->mRows->insertPlace(parent, row);
    return (source.isValid() ? d->insertClones(place, 1, source, flags, uuid)
                             : d->insertBlankItems(place, 1, uuid))
        .value(0)
        .index();
}

bool TVLProjectModel::insertRows(int row, int count, const QModelIndex &parent)
{
    return insertRowsAndClone(row, count, parent, QModelIndex(), NoCloneFlag);
}

TVLHeldItem
TVLProjectModelPrivate::insertBlankItem(int row, const QModelIndex &parent,
                                        const std::function<void(TVLProjectNode *)> &finish)
{
    if (!mRows->canInsert(row, 1, parent))
        return {};
    return insertBlankItems(mRows->insertPlace(parent, row), 1, QUuid(), finish).constFirst();
}

QModelIndex TVLProjectModel::createNewItem(int row, const QModelIndex &parent)
{
    return d->insertBlankItem(row, parent).index();
}

QModelIndex TVLProjectModel::createNewFolder(int row, const QModelIndex &parent)
{
    const TVLHeldItem folder = d->insertBlankItem(
        row, parent, [](TVLProjectNode *node) { node->mNodeType = TVL::Folder; });
    tvlAnnounceChange(this, folder.index());
    return folder.index();
}

QModelIndex TVLProjectModel::createNewText(int row, const QModelIndex &parent,
                                           const QModelIndex &sibling)
{
    const bool hasSibling = sibling.isValid() && sibling.model() == this;
    const QString siblingMode = hasSibling ? textMode(sibling) : QString();
    const QString mode = siblingMode == GeneralFormatMode ? QString() : siblingMode;
    QStringList errors;
    const TVLHeldItem text = d->insertBlankItem(row, parent, [&](TVLProjectNode *node) {
        node->mTextMode = mode;
        if (mode == ScriptFormatMode)
            d->startAsScript(node, &errors);
    });
    if (!errors.isEmpty())
        TVLLoadedDocuments::showErrors(QString(), errors);
    if (text.node() && !mode.isEmpty()) {
        Q_EMIT formatModeChanged(text.index(), mode);
        tvlAnnounceChange(this, text.index());
    }
    return text.index();
}

void TVLProjectModelPrivate::startAsScript(TVLProjectNode *node, QStringList *errors)
{
    if (mScriptMode.mElements.isEmpty())
        return;
    const TVLScriptElement &first = mScriptMode.mElements.constFirst();
    (void)mDocuments->loadQuietly(node, errors);
    (void)TVLLoadedDocuments::editUnseen(node, TVL::MainText, [&first](QTextCursor cursor) {
        cursor.setBlockCharFormat(first.charFormat());
        cursor.setCharFormat(first.charFormat());
        cursor.setBlockFormat(first.blockFormat());
    });
}
