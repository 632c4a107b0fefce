#pragma once

#include "TvlExport.h"

#include <QList>
#include <QPair>
#include <QString>

class QTextDocument;

/**
 * The project's notes: text pages that belong to no item, in their order.
 *
 * The record points at the documents and doesn't own them; the model is their parent. A note's
 * title is the title in its document's meta information.
 */
class TVL_EXPORT TVLProjectNotes
{
public:
    QList<QPair<int, QTextDocument *>> mNotes; ///< Id and text of each note.
    /** Why the file of the list could not be read; empty when it could. Such a file is never
     * written over. */
    QString mIndexError;

    [[nodiscard]] bool isEmpty() const { return mNotes.isEmpty(); }
    [[nodiscard]] bool hasId(int id) const;

    /** Marks the list itself (its order, its titles, the notes in it) as changed or not. */
    void setModified(bool modified) { mModified = modified; }

    /** Whether the list or any note's text has changed since the flags were last cleared. */
    [[nodiscard]] bool isModified() const { return mModified || notesModified(); }

    /** Whether any note's text has changed. */
    [[nodiscard]] bool notesModified() const;

    /** Why a note's file could not be read; empty when it could. Such a file is never written
     * over. */
    [[nodiscard]] static QString readError(const QTextDocument *note);
    static void setReadError(QTextDocument *note, const QString &error);

private:
    bool mModified = false;
};
