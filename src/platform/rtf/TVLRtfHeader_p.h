#pragma once

#include <QBrush>
#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QList>
#include <QStringList>
#include <QTextListFormat>

class QTextList;

/** Appends text in ASCII, with what means something to RTF escaped. */
void tvlAppendRtfText(QByteArray *rtf, QStringView text);
/** Appends a control word with a number. */
void tvlAppendRtfWord(QByteArray *rtf, const char *word, int number);
/** A brush's colour; none for patterns, gradients and no brush. */
QColor tvlSolidColor(const QBrush &brush);
/** The number of twentieths of a point. */
int tvlToTwips(double points);

/**
 * The tables at the head of a file. They fill while the text is composed, in the order in which
 * the text asks for their entries, so equal documents have equal tables.
 */
class TVLRtfHeader
{
public:
    /** The font's number. */
    [[nodiscard]] int font(const QStringList &families);
    /** The colour's number, which is above 0. */
    [[nodiscard]] int color(const QColor &color);
    /** The list's number, which is above 0. */
    [[nodiscard]] int list(const QTextList *list);

    /** The tables as RTF. */
    [[nodiscard]] QByteArray tables() const;

    /** The level that a list of some indent has in RTF. */
    [[nodiscard]] static int listLevel(int indent);
    /** What a level's paragraphs are indented by, in twips, and their first lines. */
    [[nodiscard]] static int listLeft(int level);
    [[nodiscard]] static int listFirst();
    /** The number of a list's first item. */
    [[nodiscard]] static int listStart(const QTextListFormat &format);
    /** What stands in front of an item; the first one is item 0. */
    [[nodiscard]] static QString listMarker(const QTextListFormat &format, int item);

private:
    void appendFonts(QByteArray *rtf) const;
    void appendColors(QByteArray *rtf) const;
    void appendLists(QByteArray *rtf) const;

    QHash<QStringList, int> mFontNumbers;
    QList<QStringList> mFonts;
    QHash<QRgb, int> mColorNumbers;
    QList<QColor> mColors;
    QHash<int, int> mListNumbers; ///< By the list's object index.
    QList<QTextListFormat> mLists;
};
