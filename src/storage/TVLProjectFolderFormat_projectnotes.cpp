#include "TVLProjectFolderFormat.h"

#include "TVLBinderProject.h"
#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"
#include "TVLProjectFile_p.h"
#include "TVLProjectNoteFiles_p.h"
#include "TVLProjectNotes.h"

#include "TVLCoreUtil.h"
#include "TVLFilePresence_p.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TVLTextRtfReader.h"
#include "TVLXmlReading_p.h"

#include <QBuffer>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QTextDocument>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using IndexEntry = QPair<int, TVLTextInternalLinkMap>;

const QString FolderName = u"ProjectNotes"_s;
const QString NotesIndexName = u"index.xml"_s;

bool fail(QStringList *errors, const QString &text)
{
    if (errors)
        errors->append(text);
    return false;
}

// --- The index

QByteArray notesIndexOf(const QList<QPair<int, QTextDocument *>> &notes)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter writer(&buffer);
    writer.writeProjectNotes(notes);
    return buffer.data();
}

bool writeIndex(const QString &path, const QString &filePath,
                const QList<QPair<int, QTextDocument *>> &notes, QStringList *errors)
{
    QString reason;
    if (TVLProjectNoteFiles::writeIfDifferent(path, notesIndexOf(notes), filePath, &reason))
        return true;
    qDebug("ERROR: Failed to open project notes: %ls", qUtf16Printable(filePath));
    return fail(
        errors,
        Format::tr("Failed to open project notes file: '%1'\nError: '%2'").arg(filePath, reason));
}

bool readNotesIndex(const QByteArray &index, QList<IndexEntry> *entries, QStringList *errors)
{
    QBuffer buffer;
    buffer.setData(index);
    buffer.open(QIODevice::ReadOnly);
    TVLBinderReader reader(&buffer);
    if (reader.readProjectNotes(entries))
        return true;
    return fail(errors,
                Format::tr("Error reading project notes inside 'index.xml'.\nError: %1 Line:%2 "
                           "Column: %3")
                    .arg(reader.errorString(), QString::number(reader.lineNumber()),
                         QString::number(reader.columnNumber())));
}

/** The titles in an index that was read without error. */
QHash<int, QString> titlesIn(const QByteArray &index)
{
    QHash<int, QString> titles;
    QXmlStreamReader reader(index);
    reader.setEntityExpansionLimit(0);
    int id = -1;
    while (tvlHasMore(reader)) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"Note")
            id = reader.attributes().value(u"ID"_s).toInt();
        else if (reader.name() == u"Title" && !titles.contains(id))
            titles.insert(id, reader.readElementText(QXmlStreamReader::IncludeChildElements));
    }
    return titles;
}

// --- One note

/** What went wrong; empty for nothing. */
QString readFile(const QString &path, const QString &filePath, QTextDocument *note)
{
    const TVLProjectFile file(path, filePath);
    // A file that isn't there is an empty note.
    if (file.isMissing())
        return {};
    const auto failure = [&filePath](const QString &reason) {
        return Format::tr("Could not open project notes file: '%1'\nError: %2")
            .arg(filePath, reason);
    };
    QString reason;
    const std::unique_ptr<QIODevice> device = file.open(&reason);
    if (!device)
        return failure(reason);
    // Nor is there anything in one of no bytes.
    if (device->size() == 0)
        return {};
    TVLTextRtfReader reader(note);
    if (!reader.read(device.get()))
        return failure(reader.errorString());
    TVLTextDoc::fromInlineMarkup(note);
    return {};
}

std::unique_ptr<QTextDocument> readNote(const QString &path, const IndexEntry &entry,
                                        const TVLBinderProject *model, QStringList *errors)
{
    const auto &[id, links] = entry;
    const QString filePath = TVLProjectNoteFiles::filePath(path, id);
    auto note = std::make_unique<QTextDocument>();
    TVLTextFormat::setDefaultCharFormat(note.get());
    const QString failure = readFile(path, filePath, note.get());
    if (!failure.isEmpty()) {
        TVLProjectNotes::setReadError(note.get(), failure);
        fail(errors, failure);
    } else if (model && !links.mTargets.isEmpty() && !Format::hasLinksInSyncFileFormat(filePath)) {
        TVLTextDoc::setInternalLinks(note.get(),
                                     Format::toTavelinorLinkMap(links, model->idToUuid()));
    }
    return note;
}

// --- Links

/** Where the first link to an item begins in a file: behind the quote or the blank in front of it.
 */
qsizetype firstLink(const QString &text)
{
    const QString prefix = TVLTextFormat::internalLinkPrefix();
    qsizetype at = text.indexOf(prefix);
    while (at > 0 && text.at(at - 1) != u' ' && text.at(at - 1) != u'"')
        at = text.indexOf(prefix, at + prefix.size());
    return at > 0 ? at : -1;
}

} // namespace

QDir TVLProjectFolderFormat::projectNotesDirectory(const QString &path, bool *ok,
                                                   QStringList *errors)
{
    const QString folderPath = TVLProjectNoteFiles::folderPath(path);
    bool isThere = false;
    QDir directory = filesDirectory(path, &isThere);
    isThere = isThere && (directory.exists(FolderName) || directory.mkdir(FolderName));
    if (!isThere) {
        qDebug("ERROR: Could not create project notes directory: %ls", qUtf16Printable(folderPath));
        fail(errors, tr("Could not create project notes directory: '%1'").arg(folderPath));
    }
    const bool isEntered =
        isThere && directory.cd(FolderName) && QFileInfo(folderPath).isExecutable();
    if (isThere && !isEntered) {
        qDebug("ERROR: Could not enter project notes directory: %ls", qUtf16Printable(folderPath));
        fail(errors, tr("Could not enter project notes directory: '%1'").arg(folderPath));
    }
    if (ok)
        *ok = isEntered;
    return directory;
}

bool TVLProjectFolderFormat::writeProjectNotes(const QString &path,
                                               const QList<QPair<int, QTextDocument *>> &notes,
                                               QStringList *errors)
{
    bool ok = false;
    const QDir directory = projectNotesDirectory(path, &ok, errors);
    if (!ok)
        return false;
    const bool isIndexWritten = writeIndex(path, directory.filePath(NotesIndexName), notes, errors);
    return TVLProjectNoteFiles::write(path, notes, errors) && isIndexWritten;
}

bool TVLProjectFolderFormat::readProjectNotes(const QString &path,
                                              QList<QPair<int, QTextDocument *>> *notes,
                                              const TVLBinderProject *model, QStringList *errors)
{
    // No folder is made for it: the project may lie where nothing can be made.
    if (tvlIsMissing(TVLProjectNoteFiles::folderPath(path)))
        return true;
    bool ok = false;
    const QDir directory = projectNotesDirectory(path, &ok, errors);
    if (!ok)
        return false;
    const TVLProjectFile file(path, directory.filePath(NotesIndexName));
    if (file.isMissing())
        return true;
    QString reason;
    const std::unique_ptr<QIODevice> device = file.open(&reason);
    if (!device) {
        qDebug("failed to open project notes");
        return fail(
            errors,
            tr("Failed to open project notes file: '%1'\nError: %2").arg(file.path(), reason));
    }
    const QByteArray index = device->readAll();
    QList<IndexEntry> entries;
    if (!readNotesIndex(index, &entries, errors))
        return false;
    const QHash<int, QString> titles = titlesIn(index);
    QSet<int> ids;
    for (const IndexEntry &entry : std::as_const(entries)) {
        // Two notes in one file would write over each other.
        if (ids.contains(entry.first))
            continue;
        ids.insert(entry.first);
        std::unique_ptr<QTextDocument> note = readNote(path, entry, model, errors);
        ok = ok && TVLProjectNotes::readError(note.get()).isEmpty();
        // A title that is only in the index would be gone with the next write.
        if (note->metaInformation(QTextDocument::DocumentTitle).isEmpty())
            note->setMetaInformation(QTextDocument::DocumentTitle, titles.value(entry.first));
        note->setModified(false);
        notes->append({entry.first, note.release()});
    }
    return ok;
}

bool TVLProjectFolderFormat::removeProjectNote(const QString &path, int id, QStringList *errors)
{
    const QString filePath = TVLProjectNoteFiles::filePath(path, id);
    QString reason;
    if (TVLCoreUtil::DeleteFile(filePath, &reason))
        return true;
    qDebug("Project notes delete error: %ls", qUtf16Printable(reason));
    return fail(errors, tr("Could not delete project notes file: '%1'").arg(filePath));
}

bool TVLProjectFolderFormat::hasLinksInSyncFileFormat(const QString &filePath)
{
    const QString text = TVLCoreUtil::ReadUnicodeTextFile(filePath, nullptr, "UTF-8", false);
    const qsizetype start = firstLink(text);
    const qsizetype end = start < 0 ? -1 : text.indexOf(u'"', start);
    return end >= 0 && TVLTextFormat::isTavelinorLinkWithUuid(text.mid(start, end - start));
}
