#pragma once

#include <QString>
#include <QStringView>

// What single lines of Fountain are.

/** What a line is that stands behind an empty one, by its own looks. */
enum class TVLFountainForm : quint8 {
    Action,
    SceneHeading,
    Character,
    Transition,
    Centered,
    Lyrics,
    Section,
    Synopsis,
    PageBreak,
    ForcedAction,
    ForcedSceneHeading,
    ForcedCharacter,
    ForcedTransition,
};

/**
 * Characters that mean only themselves behind a backslash; the backslash goes. `&` goes with it:
 * the two are text that nobody sees.
 */
[[nodiscard]] bool tvlIsFountainEscapable(QChar ch);
/** Whether a character counts as a blank of Fountain. */
[[nodiscard]] inline bool tvlIsFountainBlank(QChar ch)
{
    return ch == u' ' || ch == u'\t';
}
[[nodiscard]] bool tvlIsFountainBlankLine(QStringView line);
/** Whether a line of nothing but blanks is kept as an empty line of speech. */
[[nodiscard]] bool tvlIsKeptBlankLine(QStringView line);

[[nodiscard]] QStringView tvlFountainTrimmedStart(QStringView text);
/** Blanks behind a backslash stay. */
[[nodiscard]] QStringView tvlFountainTrimmedEnd(QStringView text);
[[nodiscard]] QStringView tvlFountainTrimmed(QStringView text);

/**
 * @param line         the line as it stands, without blanks before it
 * @param visible      the same without notes and what was taken out
 * @param nextIsBlank  whether no text follows
 */
[[nodiscard]] TVLFountainForm tvlFountainForm(QStringView line, QStringView visible,
                                              bool nextIsBlank);

/** Whether a line begins as the heading of a scene does. */
[[nodiscard]] bool tvlBeginsAsHeading(QStringView line);
/** Whether a point before a line makes it a heading. */
[[nodiscard]] bool tvlCanBeForcedHeading(QStringView line);
/** Whether a line of speech is a direction in parentheses. */
[[nodiscard]] bool tvlIsParenthetical(QStringView line, QStringView visible);

/** The length of the number with its signs that a heading ends with; 0 for none. */
[[nodiscard]] qsizetype tvlSceneNumberLength(QStringView heading);
[[nodiscard]] bool tvlIsSceneNumber(QStringView number);

/** Whether a line is the beginning of an entry of a title page: a word and a colon. */
[[nodiscard]] bool tvlIsTitleEntry(QStringView line);
/** Whether it is one by which a title page is known. */
[[nodiscard]] bool tvlBeginsTitlePage(QStringView line);
