#include "TVLProjectModel_p.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectNoteFiles_p.h"

#include "TVLFilePresence_p.h"
#include "TVLTextFormat.h"

#include <QScopedValueRollback>
#include <QSet>
#include <QTextDocument>

#include <algorithm>

namespace {

constexpr int FirstProjectNoteId = 10;

QString titleOf(const QTextDocument *note)
{
    return note->metaInformation(QTextDocument::DocumentTitle);
}

/** The lowest id that neither a note has nor a file that the list doesn't know of. */
int freeNoteId(const QString &path, const TVLProjectNotes &notes)
{
    QSet<int> ids;
    for (const auto &[id, document] : notes.mNotes)
        ids.insert(id);
    int id = FirstProjectNoteId;
    while (ids.contains(id) || tvlIsThere(TVLProjectNoteFiles::filePath(path, id)))
        ++id;
    return id;
}

/** Has a new note keep off its file if that may be there unseen. */
void keepOffUnseenFile(QTextDocument *note, const QString &filePath, const TVLProjectNotes &notes)
{
    if (!tvlIsMissing(filePath))
        TVLProjectNotes::setReadError(note, notes.mIndexError);
}

bool writeNotes(const QString &path, const TVLProjectNotes &notes, QStringList *errors)
{
    if (notes.mIndexError.isEmpty())
        return TVLProjectFolderFormat::writeProjectNotes(path, notes.mNotes, errors);
    // The list that could not be read knows of notes that this one doesn't, so it stays. The new
    // notes have files of their own.
    errors->append(notes.mIndexError);
    (void)TVLProjectNoteFiles::write(path, notes.mNotes, errors);
    return false;
}

} // namespace

// --- What a project can't be without

void TVLProjectModelPrivate::addDefaultProjectNotes()
{
    if (!mProjectNotes.isEmpty())
        return;
    const QScopedValueRollback suspend(mSuspendModified, true);
    const int id = freeNoteId(mPath, mProjectNotes);
    QTextDocument *document = newProjectNote(TVLProjectModel::tr("General"));
    keepOffUnseenFile(document, TVLProjectNoteFiles::filePath(mPath, id), mProjectNotes);
    mProjectNotes.mNotes.append({id, document});
}

QTextDocument *TVLProjectModelPrivate::newProjectNote(const QString &title)
{
    auto *document = new QTextDocument(q);
    TVLTextFormat::setDefaultCharFormat(document);
    if (!title.isEmpty())
        document->setMetaInformation(QTextDocument::DocumentTitle, title);
    return document;
}

void TVLProjectModelPrivate::ensureProperProjectNotes()
{
    const auto notes = mProjectNotes.mNotes;
    for (const auto &[id, document] : notes) {
        document->setParent(q);
        document->setModified(false);
        QObject::connect(document, &QTextDocument::modificationChanged, q,
                         &TVLProjectModel::onProjectNoteModifiedChanged, Qt::UniqueConnection);
    }
}

void TVLProjectModel::onProjectNoteModifiedChanged(bool modified)
{
    markProjectAsModified(modified);
}

void TVLProjectModelPrivate::readProjectNotes(QStringList *errors)
{
    const QScopedValueRollback suspend(mSuspendModified, true);
    QStringList failures;
    const bool isRead =
        TVLProjectFolderFormat::readProjectNotes(mPath, &mProjectNotes.mNotes, q, &failures);
    // A note that can't be read is in the list all the same.
    if (!isRead && mProjectNotes.isEmpty())
        mProjectNotes.mIndexError = failures.join(u'\n');
    if (errors)
        errors->append(failures);
}

void TVLProjectModelPrivate::saveProjectNotes(QStringList *failures) const
{
    if (!mProjectNotes.isModified())
        return;
    QStringList errors;
    mAreNotesBehind = !writeNotes(mPath, mProjectNotes, &errors);
    if (mAreNotesBehind)
        failures->append(
            TVLProjectModel::tr("Could not save project notes.\n%1").arg(errors.join(u'\n')));
    // Also after a failure: the user has seen the error, and the next change asks again.
    const auto notes = mProjectNotes.mNotes;
    for (const auto &[id, document] : notes)
        document->setModified(false);
    mProjectNotes.setModified(false);
}

void TVLProjectModelPrivate::askForFailedNotesAgain()
{
    if (mAreNotesBehind)
        mProjectNotes.setModified(true);
}

// --- The notes

QList<int> TVLProjectModel::projectNoteIdentities() const
{
    if (d->mProjectNotes.isEmpty())
        return {FirstProjectNoteId};
    QList<int> ids;
    for (const auto &[id, document] : std::as_const(d->mProjectNotes.mNotes))
        ids.append(id);
    return ids;
}

QTextDocument *TVLProjectModel::projectNote(int id)
{
    if (d->mProjectNotes.isEmpty()) {
        d->addDefaultProjectNotes();
        d->ensureProperProjectNotes();
    }
    for (const auto &[noteId, document] : std::as_const(d->mProjectNotes.mNotes)) {
        if (noteId == id)
            return document;
    }
    return d->mProjectNotes.mNotes.constFirst().second;
}

QString TVLProjectModel::projectNoteTitle(int id)
{
    return titleOf(projectNote(id));
}

int TVLProjectModel::addProjectNote(const QString &title)
{
    int id = freeNoteId(d->mPath, d->mProjectNotes);
    Q_EMIT projectNoteAboutToBeAdded(id);
    // Who heard of it may have added a note of his own.
    id = freeNoteId(d->mPath, d->mProjectNotes);
    QTextDocument *document = d->newProjectNote(title);
    keepOffUnseenFile(document, TVLProjectNoteFiles::filePath(d->mPath, id), d->mProjectNotes);
    connect(document, &QTextDocument::modificationChanged, this,
            &TVLProjectModel::onProjectNoteModifiedChanged);
    document->setModified(true);
    d->mProjectNotes.mNotes.append({id, document});
    markProjectAsModified(true);
    Q_EMIT projectNoteAdded(id);
    return id;
}

bool TVLProjectModel::renameProjectNote(int id, const QString &title)
{
    QTextDocument *document = projectNote(id);
    if (!hasProjectNoteId(id))
        return false;
    if (titleOf(document) == title)
        return true;
    document->setMetaInformation(QTextDocument::DocumentTitle, title);
    document->setModified(true);
    d->markProjectNotesAsModified();
    Q_EMIT projectNoteRenamed(id);
    return true;
}

bool TVLProjectModel::moveProjectNote(int from, int to)
{
    const auto isPosition = [this](int position) {
        return position >= 0 && position < d->mProjectNotes.mNotes.size();
    };
    if (from == to || !isPosition(from) || !isPosition(to))
        return false;
    const int id = d->mProjectNotes.mNotes.at(from).first;
    Q_EMIT projectNoteAboutToBeMoved(from, to);
    if (!hasProjectNoteId(id))
        return false;
    from = int(projectNoteIdentities().indexOf(id));
    to = std::min(to, int(d->mProjectNotes.mNotes.size()) - 1);
    d->mProjectNotes.mNotes.move(from, to);
    d->markProjectNotesAsModified();
    Q_EMIT projectNoteMoved(from, to);
    return true;
}

bool TVLProjectModel::removeProjectNote(int id, QStringList *errors)
{
    if (!hasProjectNoteId(id))
        return true;
    if (!TVLProjectFolderFormat::removeProjectNote(d->mPath, id, errors))
        return false;
    Q_EMIT projectNoteAboutToBeRemoved(id);
    // Instead of a note that has gone already, projectNote() would give another one.
    if (!hasProjectNoteId(id))
        return true;
    QTextDocument *document = projectNote(id);
    d->mProjectNotes.mNotes.removeIf([id](const auto &note) { return note.first == id; });
    disconnect(document, nullptr, this, nullptr);
    document->deleteLater();
    d->markProjectNotesAsModified();
    Q_EMIT projectNoteRemoved(id);
    return true;
}

void TVLProjectModelPrivate::markProjectNotesAsModified()
{
    mProjectNotes.setModified(true);
    q->markProjectAsModified(true);
}
