#include "Importer.h"

#include "TTextDoc.h"
#include "TVLDoors.h"
#include "TVLFileKinds.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFileInfo>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

/** The largest number that a name in a folder begins with; -1 for none. */
int largestNumber(const QString &folderPath)
{
    int largest = -1;
    const QStringList names = QDir(folderPath).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const auto isNoDigit = [](QChar ch) { return ch < u'0' || ch > u'9'; };
        const auto end = std::find_if(name.begin(), name.end(), isNoDigit);
        bool ok = false;
        const int number = QStringView(name.begin(), end).toInt(&ok);
        if (ok)
            largest = std::max(largest, number);
    }
    return largest;
}

/**
 * An id that no item has, and no file that an item has left behind: a new item would take that for
 * its own text, and the import would write over it.
 */
int firstFreeId(const TVLProjectModel &model)
{
    const QString path = model.path().absolutePath();
    const int leftBehind = std::max(largestNumber(TVLProjectFolderFormat::filesDocsPath(path)),
                                    largestNumber(TVLProjectFolderFormat::snapshotsPath(path)));
    return leftBehind < std::numeric_limits<int>::max()
        ? std::max(model.findNextNodeId(), leftBehind + 1)
        : model.findNextNodeId();
}

/** What an event loop would do between two files: timers, and the end of what was let go of. */
void letEventsPass()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

Importer::Importer(TVLProjectModel *model, TVLProjectNode *target, const QString &separator)
    : mModel(model)
    , mWay{target}
    , mSeparator(separator)
    , mFirstId(firstFreeId(*model))
{
}

bool Importer::import(const ImportEntry &entry, QString *error)
{
    // Behind a folder its entries come, and behind these what stands beside it.
    mWay.resize(entry.depth + 1);
    if (entry.kind == ImportKind::Folder) {
        importFolder(entry);
        return true;
    }
    const bool isImported =
        entry.kind == ImportKind::Outline ? importOutline(entry, error) : importText(entry, error);
    letEventsPass();
    return isImported;
}

void Importer::importFolder(const ImportEntry &entry)
{
    mWay.append(makeItem(TVL::Folder, entry.title));
    ++mFolderCount;
}

bool Importer::importText(const ImportEntry &entry, QString *error)
{
    auto document = TVLFileKinds::textReader(QFileInfo(entry.path).suffix())(entry.path, error);
    if (!document)
        return false;
    QList<TVLProjectNode *> nodes;
    for (const Part &part : partsOf(entry, std::move(document))) {
        nodes.append(makeItem(TVL::Text, part.title));
        *error = writeText(nodes.constLast(), *part.document);
        if (!error->isEmpty()) {
            removeItems(nodes);
            return false;
        }
    }
    mTextCount += int(nodes.size());
    return true;
}

bool Importer::importOutline(const ImportEntry &entry, QString *error)
{
    TVLProjectNode *parent = mWay.constLast();
    const qsizetype firstNew = parent->mChildren.size();
    const bool withRoot = true;
    const int atEnd = -1;
    TVLOpmlReader reader(mModel);
    if (!reader.read(entry.path, mOutlineNotes, withRoot, mModel->createIndex(parent), atEnd)) {
        *error = reader.errorString();
        return false;
    }
    TVLProjectNode *root = parent->mChildren.value(firstNew);
    if (!root)
        return true;
    if (root->mTitle == TVLProjectModel::trUntitledTitle() && !entry.title.isEmpty())
        (void)mModel->setTitle(mModel->createIndex(root), entry.title);
    count(root);
    tvlForEachNode(root, [this](const TVLProjectNode *node) { count(node); });
    return true;
}

void Importer::count(const TVLProjectNode *node)
{
    ++(node->mNodeType == TVL::Folder ? mFolderCount : mTextCount);
}

std::vector<Importer::Part> Importer::partsOf(const ImportEntry &entry,
                                              std::unique_ptr<QTextDocument> document) const
{
    std::vector<Part> parts;
    if (mSeparator.isEmpty()) {
        parts.push_back({entry.title, std::move(document)});
        return parts;
    }
    for (auto &part : TTextDoc::split(document.get(), mSeparator, Qt::SkipEmptyParts)) {
        QString title = TVLProjectModel::calcTitleFromText(part.get(), true, true);
        if (title.isEmpty())
            title = u"%1 %2"_s.arg(entry.title).arg(parts.size() + 1);
        parts.push_back({title, std::move(part)});
    }
    return parts;
}

TVLProjectNode *Importer::makeItem(TVL::NodeType type, const QString &title)
{
    TVLProjectNodeProperties properties;
    properties.mId = std::max(mFirstId, mModel->findNextNodeId());
    properties.mNodeType = type;
    properties.mTitle = title.isEmpty() ? TVLProjectModel::trUntitledTitle() : title;
    properties.mFileExtension = type == TVL::Text ? u"rtf"_s : QString();
    properties.mLabelId = mModel->defaultLabelIdentity();
    properties.mStatusId = mModel->defaultStatusIdentity();
    properties.mCreated = tvlNow();
    properties.mModified = properties.mCreated;
    const int atEnd = -1;
    return mModel->insertNodeWithProperties(atEnd, mModel->createIndex(mWay.constLast()),
                                            properties);
}

/** Writes an item's text to its file; empty, or what went wrong. */
QString Importer::writeText(TVLProjectNode *node, const QTextDocument &document)
{
    if (document.isEmpty())
        return {};
    const QModelIndex index = mModel->createIndex(node);
    TVLTextDocument *text = mModel->referenceText(index);
    if (!text || !mModel->overwriteText(index, &document) || text->isReadOnly()) {
        mModel->dereferenceItem(text);
        return u"its place in the project can't be looked into"_s;
    }
    // With nobody holding it and nothing to undo, the text goes from memory when it is written.
    text->clearUndoRedoStacks();
    mModel->dereferenceItem(text);
    QStringList errors;
    if (!mModel->saveDocuments(node, false, &errors))
        return errors.isEmpty() ? u"its text can't be written"_s : errors.join(u' ');
    const QString filePath = TVLProjectFolderFormat::filesDocsNodeTypeFilePath(
        mModel->path().absolutePath(), node->mId, TVL::MainText);
    return QFileInfo(filePath).isFile() ? QString() : u"its text has not been written"_s;
}

void Importer::removeItems(QList<TVLProjectNode *> nodes)
{
    while (!nodes.isEmpty())
        mModel->removeIndexFromModel(mModel->createIndex(nodes.takeLast()));
}
