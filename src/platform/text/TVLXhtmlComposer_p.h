#pragma once

#include "TVLTextCommentLink.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QTextCharFormat>
#include <QTextFrame>
#include <QXmlStreamWriter>

#include <functional>
#include <vector>

class QTextBlock;
class QTextDocument;
class QTextFragment;
class QTextList;
class QTextTable;
class QTextTableCell;

/**
 * Composes the body of a page: the text in its order, then its footnotes and its comments.
 *
 * Elements are written as both HTML 5 and XML read them. Between the words of a paragraph stands
 * nothing that the text doesn't have, because the page shows all white space of a paragraph.
 */
class TVLXhtmlComposer
{
public:
    struct Options
    {
        bool mIsBook = false; ///< Footnotes get the marks of electronic books.
        QHash<QString, QString> mLinkTargets; ///< For links into the project.
        /** Gives the address of a picture by its name; empty for one that can't be shown. */
        std::function<QString(const QString &)> mPictureAddress;
    };

    /** Neither is owned. */
    TVLXhtmlComposer(const QTextDocument *document, QXmlStreamWriter *writer, Options options);

    /** Writes the children of the body element. */
    void compose();

    /** The formats that most of the text has. */
    [[nodiscard]] const QTextCharFormat &commonFormat() const { return mCommon; }

private:
    struct OpenList
    {
        const QTextList *list;
        int indent;
    };
    /** A footnote or comment, with its text in one of two forms. */
    struct Note
    {
        QList<QTextFragment> runs; ///< Of an inline footnote.
        QByteArray rtf; ///< Of one of the inspector's.
    };
    struct Notes
    {
        QString name; ///< Of one, in ids and classes.
        std::vector<Note> notes;
    };

    void frame(const QTextFrame *frame);
    void table(const QTextTable *table);
    /** @param height  the number of the page's rows that the cell reaches over */
    void tableCell(const QTextTableCell &cell, bool isHeader, int height);
    void frameContent(QTextFrame::iterator it);

    void block(const QTextBlock &block);
    void paragraph(const QTextBlock &block);
    void listItem(const QTextBlock &block, const QTextList *list);
    void openList(const QTextBlock &block, const QTextList *list);
    void closeLists(qsizetype kept);
    void blockAttributes(const QTextBlock &block, bool isInList);

    void runs(const QTextBlock &block);
    void run(const QTextFragment &fragment);
    void formattedText(const QTextFragment &fragment);
    int openEmphasis(const QTextCharFormat &format);
    void text(const QString &text);
    void picture(const QTextCharFormat &format);
    void openLink(const QString &address);
    void closeLink();
    void placeNames(const QTextCharFormat &format);

    void endInlineFootnote();
    void commentsThatEnd(const QTextCharFormat &format);
    void reference(Notes *notes, const Note &note);
    void noteList(const Notes &notes);
    void noteText(const Note &note);
    [[nodiscard]] QString addressOf(const QTextCharFormat &format) const;

    void open(const QString &element) { mWriter->writeStartElement(element); }
    void close();
    void style(const QString &css);
    void lineEnd();

    const QTextDocument *mDocument;
    QXmlStreamWriter *mWriter;
    Options mOptions;
    QTextCharFormat mCommon;
    QList<OpenList> mLists;
    QString mLink; ///< Of the link that is open; empty for none.
    QList<QTextFragment> mFootnote; ///< The runs of an inline footnote so far.
    TVLTextCommentLink mComment; ///< That hangs on the last run.
    Notes mFootnotes;
    Notes mComments;
    QSet<QString> mNotesTold; ///< Identities of the inspector's notes that have their mark.
    QSet<QString> mPlaces; ///< Names of places, each of which a page may have once.
};
