#pragma once

#include "TvlExport.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextDocumentFragment>

#include <memory>
#include <vector>

class QObject;
class QTextDocument;

/**
 * What can be done with any rich text, whatever the marks on it: copies, plain text, splitting.
 *
 * A null document is an empty one to all of these.
 */
class TVL_EXPORT TTextDoc
{
public:
    /**
     * A deep copy with pictures, formats of the first and last block, lists and tables as in the
     * original; null for null. The caller owns it, or @p parent does.
     */
    [[nodiscard]] static QTextDocument *cloneDocumentQtStyle(const QTextDocument *document,
                                                             QObject *parent);
    /**
     * The text with line feeds between paragraphs and within them, ordinary blanks in place of
     * non-breaking ones and no placeholders of pictures or other objects.
     */
    [[nodiscard]] static QString toPlainText(const QTextDocument *document);
    [[nodiscard]] static QString toPlainText(const QString &text);

    /**
     * Cuts a document wherever @p separator stands, but for tables, which are not cut; the
     * separators go. The parts keep their formats. A line end right before and right after a
     * separator goes with it. Line feeds in a separator stand for the ends of paragraphs.
     * @param behavior  with Qt::SkipEmptyParts parts of nothing but white space are left out
     */
    [[nodiscard]] static std::vector<std::unique_ptr<QTextDocument>>
    split(const QTextDocument *document, const QString &separator,
          Qt::SplitBehavior behavior = Qt::KeepEmptyParts);

    /**
     * The character and block format that most of the text has; links, comments and inline notes
     * don't count as format. Either may be null.
     */
    static void findMostCommonProperties(const QTextDocument *document, QTextCharFormat *charFormat,
                                         QTextBlockFormat *blockFormat);

    /** Inline annotations by the position where each starts. */
    [[nodiscard]] static QMap<int, QTextDocumentFragment>
    annotationsMap(const QTextDocument *document);
    /** Takes inline footnotes out, with the paragraphs that hold nothing else. */
    static void removeInlineFootnotes(QTextDocument *document);
    /** Takes inline annotations out, with the paragraphs that hold nothing else. */
    static void removeAnnotations(QTextDocument *document);
    /** Takes the inspector's footnotes off the text they hang on; the text stays. */
    static void removeInspectorFootnotes(QTextDocument *document);
    static void removeInspectorComments(QTextDocument *document);
    /** Takes links to items of the project off; the text stays. */
    static void clearTavelinorLinks(QTextDocument *document);
    /**
     * Takes the properties of @p format off the whole text; with @p onlyEqual only where they have
     * the values that they have in @p format.
     */
    static void clearAll(QTextDocument *document, const QTextFormat &format, bool onlyEqual);

    /** The names of the pictures in the text, each once, in the order of the text. */
    [[nodiscard]] static QStringList imageResourceIds(const QTextDocument *document);

    /** @name MultiMarkdown, whose signs become part of the text @{ */
    /**
     * Writes the pictures to files of a folder and puts their names in MultiMarkdown's form in
     * their places; a picture that can't be written becomes the words that stand for it.
     */
    static void exportImagesToMmd(QTextDocument *document, const QString &directory);
    /** Puts MultiMarkdown's signs around bold, italic, superscript and subscript text. */
    static void charFormatToMmd(QTextDocument *document);
    /** @} */
};
