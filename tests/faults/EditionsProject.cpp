#include "EditionsProject.h"

#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSnapshotInfo.h"
#include "TVLTextDocument.h"
#include "TVLTextRtfReader.h"
#include "TVLZipReader.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString NoteTitle = u"Note"_s;

/** A snapshot of the first chapters. */
struct SnapshotRow
{
    const char *chapter;
    int second; ///< By this its date is told from others.
};

constexpr SnapshotRow SnapshotRows[] = {{"Chapter 1", 1}, {"Chapter 1", 2}, {"Chapter 2", 3}};

TVLSnapshotInfo infoOf(const SnapshotRow &row)
{
    TVLSnapshotInfo snapshot;
    snapshot.mTitle = u"Snapshot %1"_s.arg(row.second);
    snapshot.mDate = QDateTime(QDate(2020, 1, 1), QTime(12, 0)).addSecs(row.second);
    return snapshot;
}

QString snapshotText(const SnapshotRow &row)
{
    return editionText(QLatin1String(row.chapter), TVL::MainText, SnapshotEdition);
}

void mustHold(bool ok, const char *what)
{
    if (!ok)
        qFatal("the project could not be made: %s", what);
}

QModelIndex insertFirstEdition(TVLProjectModel *model, const QModelIndex &parent,
                               const QString &title)
{
    const QModelIndex index = model->insertTextNode(-1, parent, title, {}, {}, {});
    for (const TVL::DocumentType type : EditedTypes) {
        TVLTextDocument *document = model->referenceItem(index, type);
        setEdition(document, title, type, FirstEdition);
        document->clearUndoRedoStacks();
        model->dereferenceItem(document);
    }
    return index;
}

/** A text for a message: what it begins and ends with. */
QString excerptOf(const QString &text)
{
    constexpr int Length = 40;
    const QString line = QString(text).replace(u'\n', u'|');
    return line.isEmpty()
        ? u"nothing"_s
        : u"'%1 ... %2', %3 characters"_s
              .arg(line.first(qMin(Length, line.size())), line.last(qMin(Length, line.size())))
              .arg(line.size());
}

bool isIn(const EditionRange &range, int edition)
{
    return edition >= range.least && edition <= range.most;
}

} // namespace

// --- Making one

EditionsProject EditionsProject::make()
{
    const TestProject project;
    const TestModel model = project.create();
    model->removeChildrenForIndex(model->draftFolder());
    EditionsProject made;
    for (const QString &title : Chapters)
        insertFirstEdition(model.get(), model->draftFolder(), title);
    for (const QString &title : Waste)
        insertFirstEdition(model.get(), model->trashFolder(), title);
    model->insertTextNode(-1, model->researchFolder(), u"Edition %1"_s.arg(FirstEdition), {}, {},
                          {});
    tvlForEachNode(model->binderRoot(), [&made](const TVLProjectNode *node) {
        made.ids.insert(node->mTitle, node->mId);
    });
    for (const SnapshotRow &row : SnapshotRows) {
        const QTextDocument text(snapshotText(row));
        mustHold(model->addSnapshotWithExternalDocument(
                     model->index(made.ids.value(QLatin1String(row.chapter))), infoOf(row), &text,
                     nullptr),
                 "a snapshot");
    }
    const TVLProjectNotes &notes = model->projectNotes();
    mustHold(!notes.isEmpty(), "a note");
    notes.mNotes.constFirst().second->setPlainText(
        editionText(NoteTitle, TVL::MainText, FirstEdition));
    mustHold(model->save(true), "a save");
    model->prepareToDestroy();
    made.files = project.files();
    return made;
}

void EditionsProject::writeTo(const TestProject &place) const
{
    // The binder before its copies: one that is older than the binder counts as stale.
    const QString binder = place.binderPath().section(u'/', -1);
    place.writeFile(binder, files.value(binder));
    for (auto file = files.begin(); file != files.end(); ++file) {
        if (file.key() != binder)
            place.writeFile(file.key(), file.value());
    }
}

// --- Looking at one again

ReopenedProject::ReopenedProject(const EditionsProject &original, const QString &path)
    : mOriginal(&original)
    , mPath(path)
{
    TVLProjectFolderFormat::clearSnapshotsCache(path);
    mModel.reset(TVLProjectFolderFormat::openProject(path));
    if (!mModel)
        complain(u"the project doesn't open"_s);
}

QString ReopenedProject::words(const QString &title, TVL::DocumentType type)
{
    TVLProjectNode node({idOf(title), QUuid::createUuid()}, nullptr);
    TVLTextDocument document(nullptr, mModel.get(), &node, type);
    QString error;
    if (!TVLProjectFolderFormat::readDocument(mPath, &node, &document, &error))
        return u"(unreadable: %1)"_s.arg(error);
    return document.toPlainText();
}

QList<QByteArray> ReopenedProject::comments(const QString &title)
{
    const TVLProjectNode node({idOf(title), QUuid::createUuid()}, nullptr);
    TVLProjectLinksAndComments extras;
    QStringList errors;
    if (!TVLProjectFolderFormat::parseLinksAndComments(mPath, &node, &extras, &errors))
        return {errors.join(u' ').toUtf8()};
    QList<QByteArray> texts;
    for (const TVLTextCommentLink &comment : std::as_const(extras.mComments))
        texts.append(comment.mRtf);
    return texts;
}

void ReopenedProject::expectTexts(const QStringList &titles, const EditionRange &range)
{
    for (const QString &title : titles) {
        for (const TVL::DocumentType type : EditedTypes) {
            const QString found = words(title, type);
            if (!isIn(range, editionOf(found, title, type)))
                complain(
                    u"document %1 of '%2' is %3"_s.arg(int(type)).arg(title, excerptOf(found)));
        }
        expectComment(title, range);
    }
}

void ReopenedProject::expectComment(const QString &title, const EditionRange &range)
{
    const QList<QByteArray> found = comments(title);
    for (int edition = range.least; edition <= range.most; ++edition) {
        if (found == QList<QByteArray>{editionComment(title, edition)})
            return;
    }
    complain(
        u"the comment of '%1' is %2"_s.arg(title, excerptOf(QString::fromUtf8(found.value(0)))));
}

void ReopenedProject::expectBinder(const EditionRange &range)
{
    const QString title = mModel->title(mModel->index(0, 0, mModel->researchFolder()));
    if (!isIn(range, title.section(u' ', -1).toInt()))
        complain(u"the binder is of '%1'"_s.arg(title));
    for (const QString &item : EditionsProject::Chapters) {
        if (mModel->title(mModel->index(idOf(item))) != item)
            complain(u"the binder has no '%1'"_s.arg(item));
    }
}

void ReopenedProject::expectNote(const EditionRange &range)
{
    const QList<QPair<int, QTextDocument *>> notes = mModel->projectNotes().mNotes;
    const QString found = notes.isEmpty() ? QString() : notes.constFirst().second->toPlainText();
    if (!isIn(range, editionOf(found, NoteTitle, TVL::MainText)))
        complain(u"the project note is %1"_s.arg(excerptOf(found)));
}

bool ReopenedProject::hasSnapshot(const QString &title, const QString &words) const
{
    QList<TVLSnapshotInfo> snapshots;
    if (!TVLProjectFolderFormat::readSnapshots(mPath, idOf(title), &snapshots))
        return false;
    return std::any_of(snapshots.cbegin(), snapshots.cend(), [&](const TVLSnapshotInfo &snapshot) {
        QTextDocument text;
        return TVLProjectFolderFormat::readSnapshot(mPath, idOf(title), snapshot, &text, {})
            && text.toPlainText() == words;
    });
}

void ReopenedProject::expectSnapshots()
{
    for (const SnapshotRow &row : SnapshotRows) {
        const QString chapter = QLatin1String(row.chapter);
        QList<TVLSnapshotInfo> listed;
        QTextDocument text;
        if (!TVLProjectFolderFormat::readSnapshots(mPath, idOf(chapter), &listed))
            complain(u"the index of snapshots of '%1' can't be read"_s.arg(chapter));
        else if (std::none_of(listed.cbegin(), listed.cend(), [&row](const TVLSnapshotInfo &info) {
                     return info.mTitle == infoOf(row).mTitle;
                 }))
            complain(u"'%1' of '%2' isn't listed"_s.arg(infoOf(row).mTitle, chapter));
        if (!TVLProjectFolderFormat::readSnapshot(mPath, idOf(chapter), infoOf(row), &text, {})
            || text.toPlainText() != snapshotText(row))
            complain(u"'%1' of '%2' is %3"_s.arg(infoOf(row).mTitle, chapter,
                                                 excerptOf(text.toPlainText())));
    }
}

void ReopenedProject::expectAll(const EditionRange &range)
{
    if (!mModel)
        return;
    expectBinder(range);
    expectTexts(EditionsProject::Chapters, range);
    expectNote(range);
    expectSnapshots();
}

void ReopenedProject::expectMerged()
{
    if (!mModel)
        return;
    const QString survivor = EditionsProject::Chapters.constFirst();
    for (const QString &chapter : EditionsProject::Chapters) {
        const bool isListed = mModel->hasNodeId(idOf(chapter));
        for (const TVL::DocumentType type : EditedTypes) {
            const QString text = editionText(chapter, type, FirstEdition);
            if (!(isListed && words(chapter, type) == text)
                && !words(survivor, type).contains(text))
                complain(u"document %1 of '%2' is nowhere: %3 and %4"_s.arg(int(type)).arg(
                    chapter, excerptOf(words(chapter, type)), excerptOf(words(survivor, type))));
        }
        const QByteArray comment = editionComment(chapter, FirstEdition);
        if (!(isListed && comments(chapter).contains(comment))
            && !comments(survivor).contains(comment))
            complain(u"the comment of '%1' is nowhere"_s.arg(chapter));
    }
    for (const SnapshotRow &row : SnapshotRows) {
        const QString chapter = QLatin1String(row.chapter);
        // What can't be copied stays where it was, and its item leaves the binder all the same.
        if (!hasSnapshot(chapter, snapshotText(row)) && !hasSnapshot(survivor, snapshotText(row)))
            complain(u"'%1' of '%2' is nowhere"_s.arg(infoOf(row).mTitle, chapter));
    }
}

// --- Files

namespace {

bool isWholeXmlFile(QFile *file)
{
    QXmlStreamReader reader(file);
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

bool isWholeRtfFile(QFile *file)
{
    QTextDocument document;
    return TVLTextRtfReader(&document).read(file);
}

bool isWholeBinderCopy(QFile *file)
{
    const TVLZipReader zip(file->fileName());
    const std::optional<QByteArray> content = zip.count() > 0 ? zip.content(0) : std::nullopt;
    return content && content->trimmed().endsWith("</TavelinorProject>");
}

bool isWholeVersionFile(QFile *file)
{
    return file->readAll() == "18";
}

bool hasContent(QFile *file)
{
    return file->size() > 0;
}

/** There may be no line in it, and no hash in a line, where nothing is known of the texts. */
bool isWholeHashFile(QFile *file)
{
    constexpr int HashDigits = 40;
    const QList<QByteArray> lines = file->readAll().split('\n');
    return lines.constLast().isEmpty()
        && std::all_of(lines.cbegin(), lines.cend() - 1, [](const QByteArray &line) {
               const qsizetype digits = line.size() - line.lastIndexOf('=') - 1;
               // A note of how a file was left may be of one that could not be told.
               return line.isEmpty() || line.contains(".saved=")
                   || (line.contains('=') && (digits == 0 || digits == HashDigits));
           });
}

struct FileRow
{
    const char *ending;
    bool (*isWhole)(QFile *);
};

constexpr FileRow FileRows[] = {
    {".tavelx", isWholeXmlFile},
    {"binder.autosave", isWholeBinderCopy},
    {"binder.backup", isWholeBinderCopy},
    {"version.txt", isWholeVersionFile},
    {".rtf", isWholeRtfFile},
    {"_synopsis.txt", hasContent},
    {".comments", isWholeXmlFile},
    {".xml", isWholeXmlFile},
    {"search.indexes", isWholeXmlFile},
    {"docs.checksum", isWholeHashFile},
};

} // namespace

QStringList brokenFiles(const QString &path)
{
    QStringList broken;
    QDirIterator files(path, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        const auto row =
            std::find_if(std::begin(FileRows), std::end(FileRows), [&](const FileRow &r) {
                return file.fileName().endsWith(QLatin1String(r.ending));
            });
        if (row != std::end(FileRows) && !(file.open(QIODevice::ReadOnly) && row->isWhole(&file)))
            broken.append(QDir(path).relativeFilePath(file.fileName()));
    }
    return broken;
}
