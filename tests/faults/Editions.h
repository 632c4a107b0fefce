#pragma once

#include "TVL.h"
#include "TVLTextDoc.h"

#include <QString>
#include <QTextCursor>
#include <QTextDocument>

// The words of projects that go through faults. What is saved at one time is an edition of all
// texts. Each text is the same line again and again, which names the text and its edition, so that
// one that is cut off, or of two editions, shows it.

/** What the snapshots hold. */
constexpr int SnapshotEdition = 1;
/** What the project holds before anything goes wrong. */
constexpr int FirstEdition = 2;

constexpr TVL::DocumentType EditedTypes[] = {TVL::MainText, TVL::NotesText, TVL::SynopsisText};

inline QString editionLine(const QString &title, TVL::DocumentType type, int edition)
{
    return QStringLiteral("%1, document %2, edition %3").arg(title).arg(int(type)).arg(edition);
}

/** The words of a text, which is named by its item as a rule. */
inline QString editionText(const QString &title, TVL::DocumentType type, int edition)
{
    constexpr int Lines = 30;
    return (editionLine(title, type, edition) + u'\n').repeated(Lines).chopped(1);
}

/** The edition that some words are; -1 for those that are none, or not a whole one. */
inline int editionOf(const QString &words, const QString &title, TVL::DocumentType type)
{
    bool ok = false;
    const int edition = words.section(u'\n', 0, 0).section(u' ', -1).toInt(&ok);
    return ok && words == editionText(title, type, edition) ? edition : -1;
}

/** The comment that hangs on an item's main text, as its file has it. */
inline QByteArray editionComment(const QString &title, int edition)
{
    return "{\\rtf1 " + editionLine(title, TVL::CommentsFile, edition).toLatin1() + '}';
}

/** Puts an edition in place of a text, with a comment if it is a main text. */
inline void setEdition(QTextDocument *document, const QString &title, TVL::DocumentType type,
                       int edition)
{
    QTextCursor cursor(document);
    cursor.select(QTextCursor::Document);
    cursor.insertText(editionText(title, type, edition));
    if (type == TVL::MainText)
        TVLTextDoc::setComment(
            document, {0, int(title.size())},
            {QStringLiteral("comment of ") + title, editionComment(title, edition)});
}
