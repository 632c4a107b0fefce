#pragma once

#include "TVLFountainComposer_p.h"
#include "TVLFountainSyntax_p.h"
#include "TVLScreenplay_p.h"

/**
 * Writes a screenplay as Fountain, such that TVLFountainParser reads the same paragraphs, texts and
 * styles: with signs by which lines are forced to be something where their looks would say
 * something else, and with directives where Fountain has no sign.
 */
class TVLFountainWriter
{
public:
    [[nodiscard]] static QString write(const TVLScreenplay &screenplay);

private:
    explicit TVLFountainWriter(const TVLScreenplay &screenplay)
        : mParagraphs(screenplay.mParagraphs)
    {
    }

    void writeAll();
    /** These give the place of the first paragraph that they didn't write. */
    [[nodiscard]] size_t writeTitlePage();
    [[nodiscard]] size_t writeEmptyActions(size_t place);

    void writeParagraph(size_t place);
    [[nodiscard]] bool writeSpeech(const TVLScreenplayParagraph &paragraph,
                                   const QStringList &lines, TVLScreenplayKind previous);
    [[nodiscard]] bool writeByKind(size_t place, const QStringList &lines);
    void writeAction(const QStringList &lines);
    void writeCentered(const QStringList &lines);
    [[nodiscard]] bool writeHeading(const TVLScreenplayParagraph &paragraph, const QString &text);
    void writeCharacter(size_t place, const QString &text);
    void writeTransition(const QString &text);
    void writeTold(const TVLScreenplayParagraph &paragraph, const QStringList &lines);
    void writeSpeechLine(const QString &line);
    void writeFurtherSpeechLines(const QStringList &lines);

    void beginBlock();
    void writeLine(QStringView line);
    [[nodiscard]] bool isMistakenForTitle(const QString &line) const;

    const std::vector<TVLScreenplayParagraph> &mParagraphs;
    TVLFountainComposer mComposer;
    QString mText;
    qsizetype mKeptBlankLines = 0; ///< To be written before the next paragraph.
    bool mIsInSpeech = false; ///< Whether the next line may belong to a character.
};
