#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

class QTextDocument;

/** The RTF files of a project's notes, apart from the index that lists them. */
namespace TVLProjectNoteFiles {

/** The folder that they lie in, as text. */
[[nodiscard]] QString folderPath(const QString &path);
/** The file of a note, as text. */
[[nodiscard]] QString filePath(const QString &path, int id);

/** Writes a file of a project, unless it holds these very bytes: each writing is a risk. */
[[nodiscard]] bool writeIfDifferent(const QString &path, const QByteArray &bytes,
                                    const QString &filePath, QString *error);

/**
 * Writes notes into a folder that is there. One whose file could not be read is left out, which is
 * an error if there is something new in it. An error doesn't stop the others.
 */
[[nodiscard]] bool write(const QString &path, const QList<QPair<int, QTextDocument *>> &notes,
                         QStringList *errors);

} // namespace TVLProjectNoteFiles
