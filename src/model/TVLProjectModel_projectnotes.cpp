#include "TVLProjectModel.h"

#include "TVLTextFormat.h"

#include <QScopedValueRollback>
#include <QTextDocument>

#include <algorithm>

namespace {

constexpr int FirstProjectNoteId = 10;

QString titleOf(const QTextDocument *note)
{
    return note->metaInformation(QTextDocument::DocumentTitle);
}

} // namespace

// --- What a project can't be without

void TVLProjectModel::addDefaultProjectNotes()
{
    if (!mProjectNotes.isEmpty())
        return;
    const QScopedValueRollback suspend(mSuspendModified, true);
    mProjectNotes.mNotes.append({FirstProjectNoteId, newProjectNote(tr("General"))});
}

QTextDocument *TVLProjectModel::newProjectNote(const QString &title)
{
    auto *document = new QTextDocument(this);
    TVLTextFormat::setDefaultCharFormat(document);
    if (!title.isEmpty())
        document->setMetaInformation(QTextDocument::DocumentTitle, title);
    return document;
}

void TVLProjectModel::ensureProperProjectNotes()
{
    for (const auto &[id, document] : std::as_const(mProjectNotes.mNotes)) {
        document->setParent(this);
        document->setModified(false);
        connect(document, &QTextDocument::modificationChanged, this,
                &TVLProjectModel::onProjectNoteModifiedChanged, Qt::UniqueConnection);
    }
}

void TVLProjectModel::onProjectNoteModifiedChanged(bool modified)
{
    markProjectAsModified(modified);
}

void TVLProjectModel::saveProjectNotes() const
{
    if (!mProjectNotes.isModified())
        return;
    for (const auto &[id, document] : std::as_const(mProjectNotes.mNotes))
        document->setModified(false);
    mProjectNotes.setModified(false);
}

// --- The notes

QList<int> TVLProjectModel::projectNoteIdentities() const
{
    if (mProjectNotes.isEmpty())
        return {FirstProjectNoteId};
    QList<int> ids;
    for (const auto &[id, document] : std::as_const(mProjectNotes.mNotes))
        ids.append(id);
    return ids;
}

QTextDocument *TVLProjectModel::projectNote(int id)
{
    if (mProjectNotes.isEmpty()) {
        addDefaultProjectNotes();
        ensureProperProjectNotes();
    }
    for (const auto &[noteId, document] : std::as_const(mProjectNotes.mNotes)) {
        if (noteId == id)
            return document;
    }
    return mProjectNotes.mNotes.constFirst().second;
}

QString TVLProjectModel::projectNoteTitle(int id)
{
    return titleOf(projectNote(id));
}

int TVLProjectModel::addProjectNote(const QString &title)
{
    int id = FirstProjectNoteId;
    while (hasProjectNoteId(id))
        ++id;
    Q_EMIT projectNoteAboutToBeAdded(id);
    QTextDocument *document = newProjectNote(title);
    connect(document, &QTextDocument::modificationChanged, this,
            &TVLProjectModel::onProjectNoteModifiedChanged);
    document->setModified(true);
    mProjectNotes.mNotes.append({id, document});
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
    markProjectNotesAsModified();
    Q_EMIT projectNoteRenamed(id);
    return true;
}

bool TVLProjectModel::moveProjectNote(int from, int to)
{
    const auto isPosition = [this](int position) {
        return position >= 0 && position < mProjectNotes.mNotes.size();
    };
    if (from == to || !isPosition(from) || !isPosition(to))
        return false;
    Q_EMIT projectNoteAboutToBeMoved(from, to);
    mProjectNotes.mNotes.move(from, to);
    markProjectNotesAsModified();
    Q_EMIT projectNoteMoved(from, to);
    return true;
}

bool TVLProjectModel::removeProjectNote(int id, QStringList *errors)
{
    Q_UNUSED(errors)
    if (!hasProjectNoteId(id))
        return true;
    Q_EMIT projectNoteAboutToBeRemoved(id);
    QTextDocument *document = projectNote(id);
    mProjectNotes.mNotes.removeIf([id](const auto &note) { return note.first == id; });
    disconnect(document, nullptr, this, nullptr);
    document->deleteLater();
    markProjectNotesAsModified();
    Q_EMIT projectNoteRemoved(id);
    return true;
}

void TVLProjectModel::markProjectNotesAsModified()
{
    mProjectNotes.setModified(true);
    markProjectAsModified(true);
}
