#pragma once

#include "TVLScreenplay_p.h"

#include <QStringList>

#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

/**
 * Composes the text of a paragraph as lines of Fountain, with signs for its styles and backslashes
 * where its characters would be taken for signs. What lines as a whole would be taken for is the
 * matter of TVLFountainWriter.
 */
class TVLFountainComposer
{
public:
    /** Which blanks at the ends of a line a reader keeps. */
    enum KeptBlanks : quint8 { NoBlanks, TrailingBlanks, AllBlanks };

    /** One line at least. A line that would count as empty begins with nothing(). */
    [[nodiscard]] QStringList compose(const TVLScreenplayParagraph &paragraph, KeptBlanks kept);

    /** A sign for text that nobody sees. */
    [[nodiscard]] static QString nothing() { return u"\\&"_s; }

private:
    void composeRuns();
    void addCharacter(qsizetype place, quint8 styles, bool isLastOfRun);
    void addBlank(QChar blank, bool isLastOfRun, bool isLastOfLine);
    void addLineEnd(quint8 styles);
    void addComments(qsizetype place);
    void finishLine();
    void setStyles(quint8 styles);
    void addSigns(quint8 styles);
    void closeApart();
    void openApart(quint8 styles);
    void escapeLast(QChar literal);
    [[nodiscard]] bool isLineEndAt(qsizetype place) const;
    [[nodiscard]] bool hasCommentAt(qsizetype place) const;

    const TVLScreenplayParagraph *mParagraph = nullptr;
    KeptBlanks mKept = NoBlanks;
    std::vector<std::pair<qsizetype, size_t>> mComments; ///< Where each is told of, and its place.
    size_t mNextComment = 0;
    QStringList mLines;
    QString mLine;
    qsizetype mStart = 0; ///< Where the line as readers see it starts, within notes too.
    quint8 mStyles = TVLScreenplayRun::Plain; ///< What the signs so far have turned on.
    QChar mLastLiteral; ///< The last character if it is one of the text; null if it is a sign.
    bool mIsBehindSign = false; ///< Whether a sign that begins emphasis stands right before.
    bool mHasText = false; ///< Whether the line has text outside of the boneyard.
};
