#pragma once

#include "TVLRtfHeader_p.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextFrame>

class QTextDocument;
class QTextTable;
class QTextTableCell;

/** How a text is written; see TVLTextRtfWriter. */
struct TVLRtfOptions
{
    bool mExporting = false;
    bool mHighlightForMsWord = false;
    bool mDecorateHyperlinks = false;
    bool mFootnotesWithLeadingSpace = false;
    int mFootnoteDestination = 1;
    int mAnnotationDestination = 0;
};

/**
 * Composes the RTF of a document.
 *
 * Characters' and paragraphs' formats are written whole whenever they change, so no run depends on
 * what stood before it.
 */
class TVLRtfComposer
{
public:
    TVLRtfComposer(const QTextDocument *document, const TVLRtfOptions &options);

    [[nodiscard]] QByteArray compose();

private:
    /** A group of RTF around runs of text, and the format that its end brings back. */
    struct OpenGroup
    {
        QString mKey; ///< What it stands for; empty when none is open.
        QByteArray mWordsBefore;
    };

    // The text's structure
    void frame(QTextFrame::iterator from, int depth, const char *lastEnd);
    void paragraph(const QTextBlock &block, int depth, const char *end);
    void table(QTextTable *table, int depth);
    void rowProperties(QTextTable *table, int row, const QList<int> &edges);
    void cellProperties(QTextTable *table, int row, int column, int edge);
    void tableProperties(const QTextTable *table);
    void columnConstraint(const QTextTable *table, int column);
    void rowContent(QTextTable *table, int row, int depth);
    [[nodiscard]] QList<int> columnEdges(const QTextTable *table) const;

    // Paragraphs
    [[nodiscard]] QByteArray paragraphWords(const QTextBlock &block, int depth);
    [[nodiscard]] QByteArray blockFormatWords(const QTextBlock &block);
    void listMarker(const QTextBlock &block);

    // Characters
    void fragment(const QTextFragment &fragment);
    void run(const QTextCharFormat &format, int formatIndex, const QString &text);
    /** Writes what sets a format; whether it has opened a group, which the caller closes. */
    [[nodiscard]] bool useFormat(const QTextCharFormat &format, int formatIndex);
    /** Writes @p words, which set @p format; whether it has opened a group, which the caller
     * closes. */
    [[nodiscard]] bool useWords(const QTextCharFormat &format, const QByteArray &words);
    [[nodiscard]] QByteArray charWords(const QTextCharFormat &format);
    void fontWords(const QTextCharFormat &format, QByteArray *words);
    void colorWords(const QTextCharFormat &format, QByteArray *words);
    void openGroups(const QTextCharFormat &format);
    void closeGroups();
    void openLinkGroup(OpenGroup *group, const QString &key, const QString &address,
                       const QString &tip);
    void closeGroup(OpenGroup *group);
    void bookmarks(const QStringList &names, const char *word);
    [[nodiscard]] int wordHighlight(const QColor &color);

    // Pictures
    void picture(const QTextCharFormat &format);
    [[nodiscard]] QByteArray pictureBytes(const QString &name) const;

    // Notes of exported texts
    /** What becomes of a note. */
    enum class NoteTarget { None, Dropped, Footnote, Endnote, Comment, InText };
    [[nodiscard]] NoteTarget footnoteTarget() const;
    [[nodiscard]] NoteTarget annotationTarget() const;
    /** Whether the fragment is part of a note and not of the text; then it has been dealt with. */
    [[nodiscard]] bool exportNote(const QTextFragment &fragment);
    void openNote(NoteTarget target);
    void endNote();
    void finishInspectorNote();
    void noteText(const QTextDocument &note);

    const QTextDocument *mDocument;
    TVLRtfOptions mOptions;
    TVLRtfHeader mHeader;
    QByteArray mBody;
    QByteArray mCharWords; ///< In force at this place.
    QByteArray mParagraphWords;
    QHash<int, QByteArray> mCharWordsByFormat;
    QHash<int, int> mItemCounts; ///< Items so far of each list, by its object index.
    QSet<QString> mPicturesWritten;
    OpenGroup mComment;
    OpenGroup mLink;

    NoteTarget mOpenNote = NoteTarget::None;
    QByteArray mWordsBeforeNote;
    QTextCharFormat mInspectorNote; ///< Of the run that a note still has to follow.
};
