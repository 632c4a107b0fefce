#include "TVLProjectModel.h"

#include "TVLHeldDocument_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchIndex.h"

#include <QImage>
#include <QTextCursor>
#include <QUrl>

#include <algorithm>

TVLProjectNode *TVLProjectModel::createProjectNode(TVLProjectNode *parent, int row, QUuid uuid,
                                                   int id)
{
    if (uuid.isNull() || mUuidMap.contains(uuid))
        uuid = QUuid::createUuid();
    if (id == -1 || mIdMap.contains(id))
        id = givesIds() ? findNextNodeId() : -1;
    if (id != -1)
        mIdMap.insert(id, uuid);
    auto *node = row < 0 ? new TVLProjectNode({id, uuid}, parent)
                         : new TVLProjectNode({id, uuid}, parent, row);
    mUuidMap.insert(uuid, node);
    return node;
}

/** Whether new items get ids; those of newer formats have uuids alone. */
bool TVLProjectModel::givesIds() const
{
    return formatVersion() <= TVL::FormatVersion18 && !mMobileProject;
}

TVLProjectNode *TVLProjectModel::createDefaultNode(TVLProjectNode *parent, int row,
                                                   const QUuid &uuid)
{
    TVLProjectNode *node = createProjectNode(parent, row, uuid, -1);
    node->mLabelId = mDefaultLabelId;
    node->mStatusId = mDefaultStatusId;
    return node;
}

QModelIndex TVLProjectModel::rowSignalParent(const TVLProjectNode *parent) const
{
    // Qt wants a default index for the root in its row signals.
    return parent == mRootNode.get() ? QModelIndex() : createIndex(parent);
}

// Qt finds the persistent indexes that a change of rows concerns by their parents. At the top level
// it is told of a default index, which the root index isn't, so those are seen to here.

QModelIndexList
TVLProjectModel::topLevelPersistents(std::initializer_list<const TVLProjectNode *> parents) const
{
    const TVLProjectNode *root = mRootNode.get();
    if (std::find(parents.begin(), parents.end(), root) == parents.end())
        return {};
    QModelIndexList indexes = persistentIndexList();
    indexes.removeIf(
        [this, root](const QModelIndex &index) { return projectNode(index)->mParent != root; });
    return indexes;
}

void TVLProjectModel::followRows(const QModelIndexList &indexes)
{
    for (const QModelIndex &index : indexes)
        changePersistentIndex(index, createIndex(projectNode(index)));
}

void TVLProjectModel::dropPersistents(const TVLProjectNode *node)
{
    const QModelIndexList indexes = persistentIndexList();
    for (const QModelIndex &index : indexes) {
        const TVLProjectNode *ancestor = projectNode(index);
        while (ancestor && ancestor != node)
            ancestor = ancestor->mParent;
        if (ancestor)
            changePersistentIndex(index, QModelIndex());
    }
}

template <typename Insert>
auto TVLProjectModel::insertBetweenSignals(TVLProjectNode *parent, int row, int count,
                                           Insert insert)
{
    beginInsertRows(rowSignalParent(parent), row, row + count - 1);
    const QModelIndexList topLevel = topLevelPersistents({parent});
    auto inserted = insert();
    followRows(topLevel);
    endInsertRows();
    return inserted;
}

TVLProjectModel::InsertPlace TVLProjectModel::insertPlace(const QModelIndex &parent, int row) const
{
    TVLProjectNode *node = projectNode(parent);
    if (!node)
        node = mRootNode.get();
    const int end = int(node->mChildren.size());
    return {node, row < 0 || row > end ? end : row};
}

TVLProjectNode *TVLProjectModel::insertDefaultNode(TVLProjectNode *parent, int row)
{
    return insertBetweenSignals(parent, row, 1, [&] {
        TVLProjectNode *node = createDefaultNode(parent, row, QUuid());
        addToSearchIndex(node);
        return node;
    });
}

// --- Items with a given content

TVLProjectNode *TVLProjectModel::insertNode(int row, const QModelIndex &parent, TVL::NodeType type,
                                            const QString &extension, const QString &title)
{
    return insertMultipleNodes(row, parent, type, extension, title, 1).constFirst();
}

QList<TVLProjectNode *> TVLProjectModel::insertMultipleNodes(int row, const QModelIndex &parent,
                                                             TVL::NodeType type,
                                                             const QString &extension,
                                                             const QString &title, int count)
{
    count = std::max(count, 1);
    const InsertPlace place = insertPlace(parent, row);
    const auto insert = [&] {
        QList<TVLProjectNode *> nodes;
        nodes.reserve(count);
        for (int i = 0; i < count; ++i) {
            TVLProjectNode *node = createDefaultNode(place.parent, place.row + i, QUuid());
            node->mFileExtension = extension;
            node->mNodeType = type;
            node->mTitle = title.isEmpty() ? trUntitledTitle() : title;
            addToSearchIndex(node);
            nodes.append(node);
        }
        return nodes;
    };
    const QList<TVLProjectNode *> nodes =
        insertBetweenSignals(place.parent, place.row, count, insert);
    // Only now: a file that is in the way and can't be read is told in a box, where views go on.
    for (TVLProjectNode *node : nodes)
        loadDocuments(node);
    return nodes;
}

QList<QModelIndex> TVLProjectModel::insertMultipleTextNodes(int row, const QModelIndex &parent,
                                                            int count)
{
    const QList<TVLProjectNode *> nodes =
        insertMultipleNodes(row, parent, TVL::Text, u"rtf"_qs, QString(), count);
    QList<QModelIndex> indexes;
    indexes.reserve(nodes.size());
    for (const TVLProjectNode *node : nodes)
        indexes.append(createIndex(node));
    return indexes;
}

void TVLProjectModel::insertTextInto(const QModelIndex &index, TVL::DocumentType type,
                                     const QString &text)
{
    if (text.isEmpty())
        return;
    const TVLHeldDocument document(this, index, type);
    if (document)
        QTextCursor(document.get()).insertText(text);
}

QModelIndex TVLProjectModel::insertTextNode(int row, const QModelIndex &parent,
                                            const QString &title, const QString &text,
                                            const QString &synopsis, const QString &notes)
{
    const QModelIndex index = createIndex(insertNode(row, parent, TVL::Text, u"rtf"_qs, title));
    insertTextInto(index, TVL::MainText, text);
    insertTextInto(index, TVL::SynopsisText, synopsis);
    insertTextInto(index, TVL::NotesText, notes);
    return index;
}

QModelIndex TVLProjectModel::insertImageNode(int row, const QModelIndex &parent,
                                             const QString &title, const QImage &image,
                                             const QString &synopsis, const QString &notes)
{
    if (!image.isNull() && !givesIds())
        return {};
    TVLProjectNode *node = insertNode(row, parent, TVL::Image, u"png"_qs, title);
    if (!image.isNull()) {
        (void)TVLProjectFolderFormat::writeImageFile(mPath, node->mId, u"png"_qs, image);
        node->mShowSynopsisImage = true;
    }
    const QModelIndex index = createIndex(node);
    insertTextInto(index, TVL::SynopsisText, synopsis);
    insertTextInto(index, TVL::NotesText, notes);
    return index;
}

QModelIndex TVLProjectModel::insertUserFolder(int row, const QModelIndex &parent,
                                              const QString &title)
{
    return createIndex(insertNode(row, parent, TVL::Folder, QString(), title));
}

TVLProjectNode *TVLProjectModel::createUrlNode(const QUrl &url, int row, const QModelIndex &parent)
{
    const InsertPlace place = insertPlace(parent, row);
    return insertBetweenSignals(place.parent, place.row, 1, [&] {
        TVLProjectNode *node = createDefaultNode(place.parent, place.row, QUuid());
        node->mNodeType = TVL::WebArchive;
        node->mTitle = url.host();
        node->mOriginalUrl = url.toString();
        node->mHasText = true;
        addToSearchIndex(node);
        return node;
    });
}

TVLProjectNode *
TVLProjectModel::insertNodeWithProperties(int row, const QModelIndex &parent,
                                          const TVLProjectNodeProperties &properties)
{
    const InsertPlace place = insertPlace(parent, row);
    return insertBetweenSignals(place.parent, place.row, 1, [&] {
        TVLProjectNode *node =
            createProjectNode(place.parent, place.row, properties.mUuid, properties.mId);
        node->applyAllPreserveIDs(properties);
        addToSearchIndex(node);
        return node;
    });
}

QModelIndex TVLProjectModel::insertRowWithProperties(int row, const QModelIndex &parent,
                                                     const TVLProjectNodeProperties &properties)
{
    return createIndex(insertNodeWithProperties(row, parent, properties));
}

// --- Rows

bool TVLProjectModel::canInsertRows(int row, int count, const QModelIndex &parent) const
{
    const TVLProjectNode *node = projectNode(parent);
    return node && row >= -1 && row <= node->mChildren.size() && count >= 1
        && !isTrashChild(parent);
}

QList<TVLProjectNode *> TVLProjectModel::insertClones(const InsertPlace &place, int count,
                                                      const QModelIndex &source, CloneFlags flags,
                                                      const QUuid &uuid)
{
    const auto insert = [&] {
        QList<TVLProjectNode *> nodes;
        for (int i = 0; i < count; ++i) {
            nodes.append(createDefaultNode(place.parent, place.row, uuid));
            addToSearchIndex(nodes.constLast());
        }
        return nodes;
    };
    const QList<TVLProjectNode *> nodes =
        insertBetweenSignals(place.parent, place.row, count, insert);
    // Cloning inserts rows of its own, which views can place only below rows that they know.
    if (source.isValid()) {
        for (const TVLProjectNode *node : nodes) {
            (void)clone(source, createIndex(node), flags.testFlag(CloneChildren),
                        !flags.testFlag(SkipCloneRules), flags.testFlag(CloneSnapshots),
                        !flags.testFlag(CloneWithoutFiles));
        }
    }
    markProjectAsModified(true);
    return nodes;
}

bool TVLProjectModel::insertRowsAndClone(int row, int count, const QModelIndex &parent,
                                         const QModelIndex &source, CloneFlags flags)
{
    if (!canInsertRows(row, count, parent))
        return false;
    insertClones(insertPlace(parent, row), count, source, flags, QUuid());
    return true;
}

QModelIndex TVLProjectModel::insertRowAndClone(int row, const QModelIndex &parent,
                                               const QModelIndex &source, CloneFlags flags,
                                               const QUuid &uuid)
{
    if (!canInsertRows(row, 1, parent))
        return {};
    return createIndex(insertClones(insertPlace(parent, row), 1, source, flags, uuid).constFirst());
}

bool TVLProjectModel::insertRows(int row, int count, const QModelIndex &parent)
{
    return insertRowsAndClone(row, count, parent, QModelIndex(), NoCloneFlag);
}

QModelIndex TVLProjectModel::createNewItem(int row, const QModelIndex &parent)
{
    if (!insertRows(row, 1, parent))
        return {};
    return index(row == -1 ? rowCount(parent) - 1 : row, 0, parent);
}

QModelIndex TVLProjectModel::createNewFolder(int row, const QModelIndex &parent)
{
    const QModelIndex index = createNewItem(row, parent);
    if (index.isValid())
        setType(index, TVL::Folder);
    return index;
}

QModelIndex TVLProjectModel::createNewText(int row, const QModelIndex &parent,
                                           const QModelIndex &sibling)
{
    const QModelIndex index = createNewItem(row, parent);
    if (!index.isValid())
        return {};
    setType(index, TVL::Text);
    if (!sibling.isValid() || sibling.model() != this)
        return index;
    setTextMode(index, textMode(sibling));
    if (isScriptMode(sibling))
        startAsScript(index);
    return index;
}

void TVLProjectModel::startAsScript(const QModelIndex &index)
{
    if (mScriptMode.mElements.isEmpty())
        return;
    const TVLScriptElement &first = mScriptMode.mElements.constFirst();
    const TVLHeldDocument text(this, index, TVL::MainText);
    if (!text)
        return;
    QTextCursor cursor(text.get());
    cursor.setBlockCharFormat(first.charFormat());
    cursor.setCharFormat(first.charFormat());
    cursor.setBlockFormat(first.blockFormat());
}

QModelIndex TVLProjectModel::createNewProjectIndex(int row, const QModelIndex &parent,
                                                   const QString &title, const QUuid *uuid,
                                                   const QModelIndex *source)
{
    const InsertPlace place = insertPlace(parent, row);
    const QModelIndex index = createIndex(insertBetweenSignals(place.parent, place.row, 1, [&] {
        TVLProjectNode *node =
            createProjectNode(place.parent, place.row, uuid ? *uuid : QUuid(), -1);
        node->mTitle = title;
        addToSearchIndex(node);
        return node;
    }));
    if (source)
        (void)clone(*source, index, false, false, true, true);
    return index;
}

QModelIndex TVLProjectModel::createNewItemInConflictsFolder(const QUuid *uuid, const QString &title,
                                                            const QString &subfolder,
                                                            const QModelIndex *source)
{
    return createNewProjectIndex(-1, syncConflictsSubFolder(subfolder), title, uuid, source);
}
