#pragma once

#include <QString>
#include <QStringView>

/**
 * Finds where notes and what was taken out end. Asked for places from the front to the back, it
 * looks at each character a few times at most.
 */
class TVLFountainMarks
{
public:
    explicit TVLFountainMarks(QStringView text)
        : mText(text)
    {
    }

    /** The place behind what begins at a place; -1 if nothing does or it has no end. */
    [[nodiscard]] qsizetype endOfMarkAt(qsizetype place);
    /** Whether a note begins at a place, with an end or not. */
    [[nodiscard]] bool isNoteAt(qsizetype place) const { return mText.at(place) == u'['; }

    static constexpr qsizetype SignLength = 2;

private:
    static constexpr qsizetype Unknown = -2;

    /** The place of a sign from a place on, by way of what was last found; -1 for none. */
    [[nodiscard]] qsizetype find(QStringView sign, qsizetype from, qsizetype *known) const;
    [[nodiscard]] qsizetype findBlankLine(qsizetype from);

    QStringView mText;
    qsizetype mBoneyardEnd = Unknown;
    qsizetype mNoteEnd = Unknown;
    qsizetype mBlankLine = Unknown;
};

/** A line; notes and what was taken out may hold line ends. */
struct TVLFountainLine
{
    QStringView mText;
    bool mHasMarks = false; ///< Whether it holds notes or what was taken out.
    bool mHasNotes = false;
    bool mHasText = false; ///< Whether it holds anything but blanks outside of what was taken out.

    /** Without notes and what was taken out. */
    [[nodiscard]] QString visible() const;
    /** Where its first visible character stands. */
    [[nodiscard]] qsizetype visibleStart() const;
};

/** The lines of a text in which line feeds are the only line ends. */
class TVLFountainLines
{
public:
    explicit TVLFountainLines(QStringView text)
        : mText(text)
        , mMarks(text)
    {
    }

    [[nodiscard]] bool next(TVLFountainLine *line);

private:
    QStringView mText;
    TVLFountainMarks mMarks;
    qsizetype mPlace = 0;
};
