#include "ModelChecks.h"
#include "ReferenceTree.h"
#include "RowSignals.h"
#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"

#include <QDir>
#include <QImage>
#include <QTest>
#include <QTextCursor>

#include <optional>

using namespace Qt::StringLiterals;

/** Random edits of a project's tree do to a model what they do to the plainest of trees. */
class TstRandomEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void editsKeepStepWithAPlainTree_data();
    void editsKeepStepWithAPlainTree();
};

namespace {

using Node = ReferenceNode;
using Nodes = ReferenceTree::Nodes;

constexpr int Histories = 10;
// In all as many every day as there are in one whole history.
const int OperationsPerHistory = testCases(20'000);
// Making is preferred below the one and removing above the other.
constexpr int FewItems = 80;
constexpr int ManyItems = 250;
constexpr int LargestCopy = 30;
constexpr int LastSystemFolderId = 2; ///< Of those that every project has.
constexpr int WatchedItems = 5;
constexpr int OperationsPerComparison = 10;

/** A project and what its tree must look like, and random edits of both. */
class RandomEdits
{
public:
    explicit RandomEdits(quint32 seed);

    /** Does one edit and returns what is wrong after it. */
    [[nodiscard]] QString step(int number);
    /** Saves the project, opens it anew, and returns what is wrong with it. */
    [[nodiscard]] QString reopen();

private:
    struct Operation
    {
        const char *name;
        int weight;
        void (RandomEdits::*run)();
        enum { Grows, Keeps, Shrinks } effect;
    };
    static const QList<Operation> &operations();
    [[nodiscard]] const Operation &chooseOperation();

    // What is chosen by chance.
    [[nodiscard]] bool chance(int oneIn) { return mRandom.bounded(oneIn) == 0; }
    [[nodiscard]] Node *anyItem();
    [[nodiscard]] Node *anyParent() { return chance(8) ? mTree.root() : anyItem(); }
    [[nodiscard]] int anyRow(const Node *parent)
    {
        return mRandom.bounded(-1, parent->count() + 2);
    }
    [[nodiscard]] QString anyTitle();
    [[nodiscard]] Nodes anyItems(int most);
    /** Null when there is none. */
    [[nodiscard]] Node *anyRemovable();

    // The edits.
    void insertRows();
    void insertNode();
    void insertMultipleNodes();
    void insertTextNode();
    void insertImageNode();
    void createNewFolder();
    void createNewText();
    void insertClones();
    void duplicate();
    void duplicateElsewhere();
    void rename();
    void write();
    void move();
    void moveOntoItself();
    void moveAndBack();
    void moveToTrash();
    void emptyTrash();
    void removeIndex();
    void removeIndexFromModel();
    void removeChildren();
    void group();
    void ungroup();
    void merge();
    void sort();
    void save();

    // Between the two trees.
    [[nodiscard]] QModelIndex indexOf(const Node *node) const;
    [[nodiscard]] QModelIndexList indexesOf(const Nodes &nodes) const;
    void expect(bool isTrue, const QString &what);
    template <typename Value>
    void expectEqual(const Value &found, const Value &expected, const QString &what);
    void expectItem(const QModelIndex &index, const Node *node, const QString &what);
    void adoptNewItems();
    void compareFlags();
    void compareTrees();
    void compareChildren(const QModelIndex &parent, const Node *node, int *count);
    void compareTexts(const Node *node);
    void compareFiles();

    void watch(int position);
    void checkWatched();

    TestProject mProject;
    TestModel mModel;
    std::optional<RowSignals> mSignals;
    ReferenceTree mTree;
    QRandomGenerator mRandom;
    QSet<QUuid> mKnownUuids; ///< Of all items that ever were.
    struct Watched
    {
        QPersistentModelIndex index;
        QUuid uuid;
    };
    QList<Watched> mWatched;
    int mTexts = 0;
    QString mWrong;
};

RandomEdits::RandomEdits(quint32 seed)
    : mModel(mProject.create())
    , mRandom(seed)
{
    mSignals.emplace(mModel.get());
    for (const auto &[type, title] :
         {std::pair(TVL::DraftFolder, u"Draft"_s), std::pair(TVL::ResearchFolder, u"Research"_s),
          std::pair(TVL::TrashFolder, u"Trash"_s)})
        mTree.insertNodes(mTree.root(), -1, type, title, 1);
    mTree.insertClones(mTree.systemFolder(TVL::DraftFolder), 0, 1, nullptr, {});
    mTree.setModified(false);
    adoptNewItems();
    compareTrees();
    mWatched.resize(WatchedItems);
}

QString RandomEdits::step(int number)
{
    watch(mRandom.bounded(WatchedItems * 10));

    const Operation &operation = chooseOperation();
    (this->*operation.run)();
    adoptNewItems();
    compareFlags();
    checkWatched();
    if (number % OperationsPerComparison == 0) {
        compareTrees();
        compareTexts(anyItem());
        deleteReleasedObjects();
    }
    return mWrong.isEmpty() ? QString() : u"%1: %2"_s.arg(QLatin1String(operation.name), mWrong);
}

const RandomEdits::Operation &RandomEdits::chooseOperation()
{
    const qsizetype items = mTree.all().size();
    const auto weightOf = [items](const Operation &operation) {
        if (operation.effect == Operation::Grows && items > ManyItems)
            return operation.weight / 4;
        if (operation.effect == Operation::Shrinks && items < FewItems)
            return operation.weight / 4;
        return operation.weight;
    };
    int sum = 0;
    for (const Operation &operation : operations())
        sum += weightOf(operation);
    int chosen = mRandom.bounded(sum);
    for (const Operation &operation : operations()) {
        chosen -= weightOf(operation);
        if (chosen < 0)
            return operation;
    }
    Q_UNREACHABLE();
}

const QList<RandomEdits::Operation> &RandomEdits::operations()
{
    using Edits = RandomEdits;
    static const QList<Operation> table = {
        {"insertRows", 60, &Edits::insertRows, Operation::Grows},
        {"insertNode", 60, &Edits::insertNode, Operation::Grows},
        {"insertMultipleNodes", 20, &Edits::insertMultipleNodes, Operation::Grows},
        {"insertTextNode", 12, &Edits::insertTextNode, Operation::Grows},
        {"insertImageNode", 8, &Edits::insertImageNode, Operation::Grows},
        {"createNewFolder", 20, &Edits::createNewFolder, Operation::Grows},
        {"createNewText", 20, &Edits::createNewText, Operation::Grows},
        {"insertRowsAndClone", 40, &Edits::insertClones, Operation::Grows},
        {"duplicate", 20, &Edits::duplicate, Operation::Grows},
        {"duplicate elsewhere", 20, &Edits::duplicateElsewhere, Operation::Grows},
        {"setTitle", 40, &Edits::rename, Operation::Keeps},
        {"writing", 24, &Edits::write, Operation::Keeps},
        {"moveToFolder", 200, &Edits::move, Operation::Keeps},
        {"moveToFolder into itself", 20, &Edits::moveOntoItself, Operation::Keeps},
        {"moveToFolder and back", 60, &Edits::moveAndBack, Operation::Keeps},
        {"moveToTrash", 32, &Edits::moveToTrash, Operation::Shrinks},
        {"emptyTrash", 4, &Edits::emptyTrash, Operation::Shrinks},
        {"removeIndex", 8, &Edits::removeIndex, Operation::Shrinks},
        {"removeIndexFromModel", 60, &Edits::removeIndexFromModel, Operation::Shrinks},
        {"removeChildrenForIndex", 8, &Edits::removeChildren, Operation::Shrinks},
        {"groupIndexes", 40, &Edits::group, Operation::Keeps},
        {"ungroupIndexes", 40, &Edits::ungroup, Operation::Keeps},
        {"mergeIndexes", 24, &Edits::merge, Operation::Shrinks},
        {"sort", 8, &Edits::sort, Operation::Keeps},
        {"save", 4, &Edits::save, Operation::Keeps},
    };
    return table;
}

// --- What is chosen by chance

Node *RandomEdits::anyItem()
{
    const Nodes nodes = mTree.all();
    return nodes.at(mRandom.bounded(int(nodes.size())));
}

Nodes RandomEdits::anyItems(int most)
{
    Nodes nodes;
    for (int i = mRandom.bounded(1, most + 1); i > 0; --i) {
        Node *node = anyItem();
        if (!nodes.contains(node))
            nodes.append(node);
    }
    // Neighbours are what a writer selects.
    Node *first = nodes.constFirst();
    for (int row = first->row() + 1; chance(2) && row < first->parent->count(); ++row) {
        Node *node = first->parent->children[size_t(row)].get();
        if (!nodes.contains(node))
            nodes.append(node);
    }
    return nodes;
}

Node *RandomEdits::anyRemovable()
{
    Nodes nodes = mTree.all();
    // The folders that every project has stay where they are.
    nodes.removeIf([](const Node *node) {
        return node->id <= LastSystemFolderId || node->descendants().size() > LargestCopy;
    });
    return nodes.isEmpty() ? nullptr : nodes.at(mRandom.bounded(int(nodes.size())));
}

QString RandomEdits::anyTitle()
{
    static const QStringList titles = {QString(),      u"Chapter"_s,     u"Chapter-1"_s,
                                       u"Chapter-2"_s, u"Scène 1-09"_s,  u"-"_s,
                                       u"Scene 7"_s,   u"1-9999999999"_s};
    return titles.at(mRandom.bounded(int(titles.size())));
}

// --- Making

void RandomEdits::insertRows()
{
    Node *parent = anyParent();
    const int row = anyRow(parent);
    const int count = mRandom.bounded(0, 4);
    const bool isDone = mModel->insertRows(row, count, indexOf(parent));
    expectEqual(isDone, mTree.insertClones(parent, row, count, nullptr, {}), u"result"_s);
}

void RandomEdits::insertNode()
{
    Node *parent = anyParent();
    const int row = anyRow(parent);
    // System folders are rare, but any number may be anywhere.
    const auto type = TVL::NodeType(chance(20) ? mRandom.bounded(3) : 3 + mRandom.bounded(7));
    const QString title = anyTitle();
    const TVLProjectNode *made = mModel->insertNode(row, indexOf(parent), type, u"rtf"_s, title);
    expectItem(mModel->createIndex(made),
               mTree.insertNodes(parent, row, type, title, 1).constFirst(), u"new item"_s);
}

void RandomEdits::insertMultipleNodes()
{
    Node *parent = anyParent();
    const int row = anyRow(parent);
    const auto type = TVL::NodeType(mRandom.bounded(3, 10));
    const QString title = anyTitle();
    const int count = mRandom.bounded(0, 5);
    const QList<TVLProjectNode *> made =
        mModel->insertMultipleNodes(row, indexOf(parent), type, QString(), title, count);
    const Nodes expected = mTree.insertNodes(parent, row, type, title, count);
    expectEqual(made.size(), expected.size(), u"number of items"_s);
    for (qsizetype i = 0; mWrong.isEmpty() && i < made.size(); ++i)
        expectItem(mModel->createIndex(made.at(i)), expected.at(i), u"new item"_s);
}

void RandomEdits::insertTextNode()
{
    Node *parent = anyParent();
    const int row = anyRow(parent);
    const QString words = u"Words %1"_s.arg(++mTexts);
    const QString synopsis = chance(2) ? u"Synopsis %1\n"_s.arg(mTexts) : QString();
    const QString notes = chance(2) ? u"Notes %1\nmore of them"_s.arg(mTexts) : QString();
    const QModelIndex index =
        mModel->insertTextNode(row, indexOf(parent), u"Text"_s, words, synopsis, notes);
    (void)mModel->save(index);

    const Node *node = mTree.insertNodes(parent, row, TVL::Text, u"Text"_s, 1).constFirst();
    ReferenceFiles &files = mTree.filesOf(node);
    files.text.prepend(words);
    files.synopsis.prepend(synopsis);
    files.notes.prepend(notes);
    mTree.setModified();
    expectItem(index, node, u"new text"_s);
}

void RandomEdits::insertImageNode()
{
    Node *parent = anyParent();
    const int row = anyRow(parent);
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(Qt::white);
    const QModelIndex index =
        mModel->insertImageNode(row, indexOf(parent), u"Picture"_s, image, QString(), QString());
    const Node *node = mTree.insertNodes(parent, row, TVL::Image, u"Picture"_s, 1).constFirst();
    mTree.filesOf(node).hasImage = true;
    expectItem(index, node, u"new image"_s);
}

void RandomEdits::createNewFolder()
{
    Node *parent = anyParent();
    const int row = anyRow(parent);
    const QModelIndex index = mModel->createNewFolder(row, indexOf(parent));
    const int position = row == -1 ? parent->count() : row;
    if (!mTree.insertClones(parent, row, 1, nullptr, {})) {
        expect(!index.isValid(), u"a folder was made where none may be"_s);
        return;
    }
    Node *node = parent->children[size_t(position)].get();
    node->type = TVL::Folder;
    expectItem(index, node, u"new folder"_s);
}

void RandomEdits::createNewText()
{
    Node *parent = anyParent();
    const int row = anyRow(parent);
    const QModelIndex sibling = chance(2) ? indexOf(anyItem()) : QModelIndex();
    const QModelIndex index = mModel->createNewText(row, indexOf(parent), sibling);
    const int position = row == -1 ? parent->count() : row;
    if (mTree.insertClones(parent, row, 1, nullptr, {}))
        expectItem(index, parent->children[size_t(position)].get(), u"new text"_s);
    else
        expect(!index.isValid(), u"a text was made where none may be"_s);
}

void RandomEdits::insertClones()
{
    Node *parent = anyParent();
    const int row = anyRow(parent);
    Node *source = anyItem();
    TVLProjectModel::CloneFlags flags = TVLProjectModel::CloneFlags(mRandom.bounded(16));
    if (source->descendants().size() > LargestCopy)
        flags.setFlag(TVLProjectModel::CloneChildren, false);
    const int count = mRandom.bounded(1, 3);
    const bool isDone =
        mModel->insertRowsAndClone(row, count, indexOf(parent), indexOf(source), flags);
    const ReferenceCloneOptions options = {
        .withChildren = flags.testFlag(TVLProjectModel::CloneChildren),
        .checkRules = !flags.testFlag(TVLProjectModel::SkipCloneRules),
        .withFiles = !flags.testFlag(TVLProjectModel::CloneWithoutFiles)};
    expectEqual(isDone, mTree.insertClones(parent, row, count, source, options), u"result"_s);
}

void RandomEdits::duplicate()
{
    const Nodes nodes = anyItems(4);
    qsizetype size = 0;
    for (const Node *node : nodes)
        size += node->descendants().size();
    const bool withChildren = size <= LargestCopy && chance(2);
    const QModelIndexList made = mModel->duplicate(indexesOf(nodes), withChildren);
    const Nodes expected = mTree.duplicate(nodes, withChildren);
    expectEqual(made.size(), expected.size(), u"number of copies"_s);
    for (qsizetype i = 0; mWrong.isEmpty() && i < made.size(); ++i)
        expectItem(made.at(i), expected.at(i), u"copy"_s);
}

void RandomEdits::duplicateElsewhere()
{
    Node *source = anyItem();
    Node *parent = anyParent();
    const int row = anyRow(parent);
    const bool withChildren = source->descendants().size() <= LargestCopy && chance(2);
    const bool checkRules = chance(2);
    const QModelIndex made =
        mModel->duplicate(indexOf(source), row, indexOf(parent), withChildren, checkRules);
    const Nodes expected = mTree.duplicate({source}, row, parent, withChildren, checkRules);
    if (expected.isEmpty())
        expect(!made.isValid(), u"a copy was made where none may be"_s);
    else
        expectItem(made, expected.constFirst(), u"copy"_s);
}

// --- Changing

void RandomEdits::rename()
{
    Node *node = anyItem();
    const QString title = chance(2) ? anyTitle() : ReferenceTree::uniqueTitle(anyTitle(), node);
    expectEqual(mModel->findUniqueTitle(title, indexOf(node)),
                ReferenceTree::uniqueTitle(title, node), u"unique title"_s);
    expect(mModel->setTitle(indexOf(node), title), u"a title could not be set"_s);
    if (node->title != title)
        mTree.setModified();
    node->title = title;
}

void RandomEdits::write()
{
    Node *node = anyItem();
    if (!node->isText())
        return;
    TVLTextDocument *document = mModel->referenceText(indexOf(node));
    QTextCursor cursor(document);
    cursor.movePosition(QTextCursor::End);
    const QString words = u"More words %1\n"_s.arg(++mTexts);
    cursor.insertText(words);
    if (chance(2))
        document->clearUndoRedoStacks();
    mModel->dereferenceItem(document);
    expect(mModel->save(indexOf(node)), u"a text could not be saved"_s);
    mTree.filesOf(node).text.append(words);
    mTree.setModified();
}

void RandomEdits::move()
{
    Node *target = anyParent();
    const Nodes nodes = anyItems(5);
    const int row = anyRow(target);
    const bool isDone = mModel->moveToFolder(indexOf(target), indexesOf(nodes), row);
    expectEqual(isDone, mTree.moveToFolder(target, nodes, row), u"result"_s);
}

void RandomEdits::moveOntoItself()
{
    Nodes nodes = anyItems(3);
    const Nodes below = nodes.constFirst()->descendants();
    Node *target =
        below.isEmpty() ? nodes.constFirst() : below.at(mRandom.bounded(int(below.size())));
    const int row = anyRow(target);
    const bool isDone = mModel->moveToFolder(indexOf(target), indexesOf(nodes), row);
    expectEqual(isDone, mTree.moveToFolder(target, nodes, row), u"result"_s);
}

void RandomEdits::moveAndBack()
{
    Node *node = anyItem();
    Node *parent = node->parent;
    Node *target = anyParent();
    const int oldRow = node->row();
    const int row = anyRow(target);
    const bool isMoved = mModel->moveToFolder(indexOf(target), {indexOf(node)}, row);
    expectEqual(isMoved, mTree.moveToFolder(target, {node}, row), u"result of the move"_s);
    if (!isMoved)
        return;
    const bool isBefore = target == parent && node->row() < oldRow;
    const int backRow = isBefore ? oldRow + 1 : oldRow;
    const bool isBack = mModel->moveToFolder(indexOf(parent), {indexOf(node)}, backRow);
    expectEqual(isBack, mTree.moveToFolder(parent, {node}, backRow), u"result of the way back"_s);
    if (isBack) {
        expectEqual(indexOf(node).row(), oldRow, u"row after the way back"_s);
        expectItem(indexOf(node), node, u"item that went back"_s);
    }
}

void RandomEdits::moveToTrash()
{
    Nodes nodes = chance(4) ? anyItems(3) : Nodes({anyRemovable()});
    nodes.removeAll(nullptr);
    const bool isDone = mModel->moveToTrash(indexesOf(nodes));
    expectEqual(isDone, mTree.moveToTrash(nodes), u"result"_s);
}

// --- Removing

void RandomEdits::emptyTrash()
{
    expect(mModel->emptyTrash(), u"the Trash could not be emptied"_s);
    mTree.emptyTrash();
}

void RandomEdits::removeIndex()
{
    Node *node = anyRemovable();
    if (!node)
        return;
    expect(mModel->removeIndex(indexOf(node)), u"an item could not be removed"_s);
    expect(!mModel->removeIndex(QModelIndex()), u"no item was removed with success"_s);
    mTree.remove(node);
    mTree.setModified(false);
}

void RandomEdits::removeIndexFromModel()
{
    Node *node = anyRemovable();
    if (!node)
        return;
    mModel->removeIndexFromModel(indexOf(node));
    mTree.remove(node);
}

void RandomEdits::removeChildren()
{
    Node *node = anyRemovable();
    if (!node)
        return;
    mModel->removeChildrenForIndex(indexOf(node));
    mTree.removeChildren(node);
}

// --- Arranging

void RandomEdits::group()
{
    const Nodes nodes = anyItems(4);
    const QModelIndex found = mModel->groupIndexes(indexesOf(nodes));
    const Node *expected = mTree.group(nodes);
    if (expected)
        expectItem(found, expected, u"group"_s);
    else
        expect(!found.isValid(), u"a refused group has an index"_s);
}

void RandomEdits::ungroup()
{
    const Nodes nodes = anyItems(4);
    const bool isDone = mModel->ungroupIndexes(indexesOf(nodes));
    expectEqual(isDone, mTree.ungroup(nodes), u"result"_s);
}

void RandomEdits::merge()
{
    Nodes nodes = anyItems(4);
    if (!chance(8))
        nodes.removeIf([](const Node *node) { return !node->isText(); });
    const QModelIndex found = mModel->mergeIndexes(indexesOf(nodes));
    const Node *expected = mTree.merge(nodes);
    if (expected)
        expectItem(found, expected, u"merged item"_s);
    else
        expect(!found.isValid(), u"a refused merge has an index"_s);
    if (expected && expected->isText())
        compareTexts(expected);
}

void RandomEdits::sort()
{
    const Nodes nodes = anyItems(40);
    const QModelIndexList indexes = indexesOf(nodes);
    const QModelIndexList inOrder = indexesOf(mTree.sorted(nodes));
    expect(TVLProjectModel::sortIndexes(indexes) == inOrder, u"sortIndexes"_s);
    expect(TVLProjectModel::sortIndexesStable(indexes) == inOrder, u"sortIndexesStable"_s);
    expect(mModel->sortIndexesHash(indexes) == inOrder, u"sortIndexesHash"_s);
    expect(TVLProjectModel::sort(indexes, TVL::Columns(20), Qt::DescendingOrder) == inOrder,
           u"sort by a column that there isn't"_s);
    Nodes byTitle = nodes;
    std::stable_sort(byTitle.begin(), byTitle.end(), [](const Node *a, const Node *b) {
        return a->title.localeAwareCompare(b->title) < 0;
    });
    expect(TVLProjectModel::sort(indexes, TVL::TitleColumn, Qt::AscendingOrder)
               == indexesOf(byTitle),
           u"sort by title"_s);
}

void RandomEdits::save()
{
    expect(mModel->save(), u"the project could not be saved"_s);
    mTree.setModified(false);
}

// --- Between the two trees

QModelIndex RandomEdits::indexOf(const Node *node) const
{
    return node->parent ? mModel->index(node->row(), 0, indexOf(node->parent))
                        : mModel->rootIndex();
}

QModelIndexList RandomEdits::indexesOf(const Nodes &nodes) const
{
    QModelIndexList indexes;
    for (const Node *node : nodes)
        indexes.append(indexOf(node));
    return indexes;
}

void RandomEdits::expect(bool isTrue, const QString &what)
{
    if (!isTrue && mWrong.isEmpty())
        mWrong = what;
}

template <typename Value>
void RandomEdits::expectEqual(const Value &found, const Value &expected, const QString &what)
{
    if (found == expected)
        return;
    QString text;
    QDebug(&text) << what << "is" << found << "instead of" << expected;
    expect(false, text);
}

void RandomEdits::expectItem(const QModelIndex &index, const Node *node, const QString &what)
{
    expect(index.isValid() && index == indexOf(node), what + u" is elsewhere"_s);
    expectEqual(mModel->nodeIdentity(index), node->id, what + u", id"_s);
    expectEqual(int(mModel->type(index)), int(node->type), what + u", type"_s);
    expectEqual(mModel->title(index), node->title, what + u", title"_s);
    if (!node->uuid.isNull())
        expectEqual(mModel->nodeUuid(index), node->uuid, what + u", uuid"_s);
}

void RandomEdits::adoptNewItems()
{
    const Nodes nodes = mTree.takeNewNodes();
    for (Node *node : nodes) {
        const QModelIndex index = indexOf(node);
        expectItem(index, node, u"new item"_s);
        node->uuid = mModel->nodeUuid(index);
        expect(!node->uuid.isNull() && !mKnownUuids.contains(node->uuid), u"uuid in use"_s);
        mKnownUuids.insert(node->uuid);
    }
}

void RandomEdits::compareFlags()
{
    expectEqual(mModel->isModified(), mTree.isModified(), u"modification"_s);
    expectEqual(mModel->totalNodesCount(), int(mTree.all().size()), u"number of items"_s);
    expectEqual(mModel->uuidsList().size(), mTree.all().size(), u"number of uuids"_s);
    expectEqual(mModel->idToUuid().size(), mTree.all().size(), u"number of ids"_s);
    expect(mSignals->wrong().isEmpty(), mSignals->wrong());
    expect(mSignals->resets() == 0, u"the model was reset"_s);
}

void RandomEdits::compareTrees()
{
    int count = 0;
    compareChildren(mModel->rootIndex(), mTree.root(), &count);
    expectEqual(mModel->totalNodesCount(), count, u"number of items"_s);
    expectEqual(mapsOutOfStep(mModel.get()), QString(), u"maps"_s);
}

void RandomEdits::compareChildren(const QModelIndex &parent, const Node *node, int *count)
{
    expectEqual(mModel->rowCount(parent), node->count(), u"children of '%1'"_s.arg(node->title));
    for (int row = 0; mWrong.isEmpty() && row < node->count(); ++row) {
        const Node *child = node->children[size_t(row)].get();
        const QModelIndex index = mModel->index(row, 0, parent);
        expectItem(index, child, u"item"_s);
        expect(mModel->findNode(child->id) == mModel->projectNode(index)
                   && mModel->indexByUuid(child->uuid) == index,
               u"an item isn't found by id and uuid"_s);
        ++*count;
        compareChildren(index, child, count);
    }
}

void RandomEdits::compareTexts(const Node *node)
{
    if (!node->isText())
        return;
    const ReferenceFiles files = mTree.files().value(node->id);
    const QModelIndex index = indexOf(node);
    expectEqual(mModel->documentPlainText(index, false), files.text, u"text"_s);
    expectEqual(mModel->documentNoteAsPlainText(index), files.notes, u"notes"_s);
    expectEqual(mModel->synopsis(index), files.synopsis, u"synopsis"_s);
}

void RandomEdits::compareFiles()
{
    QSet<QString> expected;
    const QMap<int, ReferenceFiles> &files = mTree.files();
    for (auto entry = files.begin(); entry != files.end(); ++entry) {
        const auto expectFile = [&](bool isThere, const QString &ending) {
            if (isThere)
                expected.insert(QString::number(entry.key()) + ending);
        };
        expectFile(!entry->text.isEmpty(), u".rtf"_s);
        expectFile(!entry->notes.isEmpty(), u"_notes.rtf"_s);
        expectFile(!entry->synopsis.isEmpty(), u"_synopsis.txt"_s);
        expectFile(entry->hasImage, u".png"_s);
    }
    const QStringList found = documentFiles(mProject.path());
    expectEqual(QSet<QString>(found.begin(), found.end()), expected, u"files"_s);
}

// --- Persistent indexes

void RandomEdits::watch(int position)
{
    if (position >= mWatched.size())
        return;
    const Node *node = anyItem();
    mWatched[position] = {indexOf(node), node->uuid};
}

void RandomEdits::checkWatched()
{
    for (Watched &watched : mWatched) {
        if (watched.uuid.isNull())
            continue;
        if (const Node *node = mTree.find(watched.uuid)) {
            expect(watched.index == indexOf(node) && mModel->nodeUuid(watched.index) == node->uuid,
                   u"a persistent index has lost its item"_s);
        } else {
            expect(!watched.index.isValid(), u"a persistent index has outlived its item"_s);
            watched = {};
        }
    }
}

// --- The end

QString RandomEdits::reopen()
{
    mSignals.reset();
    mWatched.clear();
    // Two ways of removing items leave it to their caller to have that saved.
    expect(mModel->save(true), u"the project could not be saved"_s);
    mModel->prepareToDestroy();
    mModel = mProject.open();
    if (!mModel)
        return u"the project could not be opened"_s;
    compareTrees();
    const Nodes nodes = mTree.all();
    for (const Node *node : nodes)
        compareTexts(node);
    compareFiles();
    return mWrong;
}

} // namespace

void TstRandomEdits::editsKeepStepWithAPlainTree_data()
{
    QTest::addColumn<quint32>("seed");
    // Other histories than those of every day begin with another seed.
    const quint32 first = qMax(1, qEnvironmentVariableIntValue("TVL_TEST_SEED"));
    for (quint32 seed = first; seed < first + Histories; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TstRandomEdits::editsKeepStepWithAPlainTree()
{
    QFETCH(quint32, seed);
    RandomEdits edits(seed);
    for (int number = 0; number < OperationsPerHistory; ++number) {
        const QString wrong = edits.step(number);
        QVERIFY2(wrong.isEmpty(),
                 qPrintable(u"seed %1, operation %2, %3"_s.arg(seed).arg(number).arg(wrong)));
    }
    const QString wrong = edits.reopen();
    QVERIFY2(wrong.isEmpty(), qPrintable(u"seed %1, reopened: %2"_s.arg(seed).arg(wrong)));
}

TVL_TEST(TstRandomEdits)
#include "tst_randomedits.moc"
