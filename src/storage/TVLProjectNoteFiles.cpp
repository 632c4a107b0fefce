#include "TVLProjectNoteFiles_p.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectNotes.h"
#include "TVLRedoJournal_p.h"

#include "TVLCoreUtil.h"
#include "TVLTextRtfWriter.h"

#include <QFileInfo>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

bool writeNote(const QString &path, const QString &filePath, const QTextDocument *note,
               QString *error)
{
    *error = TVLProjectNotes::readError(note);
    if (!error->isEmpty())
        return !note->isModified();
    const QByteArray rtf = TVLTextRtfWriter(nullptr).toRtf(note, false);
    return TVLProjectNoteFiles::writeIfDifferent(path, rtf, filePath, error);
}

} // namespace

QString TVLProjectNoteFiles::folderPath(const QString &path)
{
    return Format::filesPath(Format::calcEnclosingPath(path)) + u"/ProjectNotes"_s;
}

QString TVLProjectNoteFiles::filePath(const QString &path, int id)
{
    return folderPath(path) + u"/Note-%1.rtf"_s.arg(id);
}

bool TVLProjectNoteFiles::writeIfDifferent(const QString &path, const QByteArray &bytes,
                                           const QString &filePath, QString *error)
{
    const QFileInfo file(filePath);
    const bool mayBeSame = file.isFile() && file.size() == bytes.size();
    if (mayBeSame && TVLCoreUtil::ReadBinaryFile(filePath) == bytes)
        return true;
    return tvlWriteJournaled(path, {filePath, bytes}, error);
}

bool TVLProjectNoteFiles::write(const QString &path,
                                const QList<QPair<int, QTextDocument *>> &notes,
                                QStringList *errors)
{
    bool isComplete = true;
    for (const auto &[id, note] : notes) {
        QString error;
        if (!note || writeNote(path, filePath(path, id), note, &error))
            continue;
        isComplete = false;
        if (errors)
            errors->append(
                Format::tr("Could not generate project notes file\nError: '%1'").arg(error));
    }
    return isComplete;
}
