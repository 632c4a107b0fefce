#pragma once

#include "TVLRtfState_p.h"

#include <QColor>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTextBlockFormat>
#include <QTextCharFormat>

class TVLRtfCodePage;

/** A font of the font table. */
struct TVLRtfFont
{
    QString mName;
    QStringList mAlternatives;
    const TVLRtfCodePage *mCodePage = nullptr; ///< Null for that of the document.
    int mCharset = 0; ///< By the numbers of Windows.
};

/**
 * The tables of a file that formats lead into, and the formats that come of them. Equal states
 * give the very same format, so a document gets each only once.
 */
class TVLRtfFormats
{
public:
    /**
     * How many different fonts, or different sets of tabs, a document can have. Qt finds formats
     * that differ in nothing but a list by going through all of them, so a file with a hundred
     * thousand, which no program writes, would take hours.
     */
    static constexpr qsizetype MaximumSets = 1000;

    QHash<int, TVLRtfFont> mFonts;
    QList<QColor> mColors; ///< An invalid colour is the automatic one.
    QStringList mLinks;
    QStringList mLinkTips; ///< One for each of mLinks; may be empty.
    QStringList mComments;
    QList<QStringList> mBookmarks{QStringList()};
    int mDefaultFont = -1; ///< -1 when the file names none.

    /** A font by its number; the default one for a number that isn't in the table. */
    [[nodiscard]] const TVLRtfFont &font(int number) const;
    /** The place of a state's format in formats(). */
    [[nodiscard]] int charFormatIndex(const TVLRtfCharState &state);
    [[nodiscard]] const QList<QTextCharFormat> &charFormats() const { return mCharFormats; }
    [[nodiscard]] int addCharFormat(const QTextCharFormat &format);

    /** @p listLeft and @p listFirst are the indents that the paragraph's list accounts for. */
    [[nodiscard]] QTextBlockFormat blockFormat(const TVLRtfParagraphState &state, int listLeft,
                                               int listFirst);
    [[nodiscard]] QColor color(int index) const { return mColors.value(index); }
    /** The colour of a background or a line. There 0 means none, whatever the table has there. */
    [[nodiscard]] QColor shade(int index) const { return index > 0 ? color(index) : QColor(); }

    /** Forgets what was made of the tables, which have changed. */
    void forgetFormats() { mIndexes.clear(); }

private:
    [[nodiscard]] QTextCharFormat charFormat(const TVLRtfCharState &state) const;
    [[nodiscard]] bool canHaveTabs(const QList<QTextOption::Tab> &tabs);
    void applyFont(const TVLRtfCharState &state, QTextCharFormat *format) const;
    void applyColors(const TVLRtfCharState &state, QTextCharFormat *format) const;
    void applyMarks(const TVLRtfCharState &state, QTextCharFormat *format) const;

    QSet<size_t> mTabSets; ///< The hashes of those that the document has.
    QHash<TVLRtfCharState, int> mIndexes;
    QList<QTextCharFormat> mCharFormats;
};
