#pragma once

#include "TVLFountainInline_p.h"
#include "TVLFountainLines_p.h"
#include "TVLFountainSyntax_p.h"
#include "TVLScreenplay_p.h"

#include <optional>

struct TVLFountainDirective;

/** Reads Fountain as plain values. Any text is Fountain; no word of it gets lost. */
class TVLFountainParser
{
public:
    [[nodiscard]] static TVLScreenplay parse(const QString &text);

private:
    explicit TVLFountainParser(QStringView text);

    /** What a line without an empty one before it goes on with. */
    enum class Open : quint8 {
        Nothing,
        Action,
        Centered,
        Speech, ///< What belongs to a character.
        Told, ///< A paragraph of which a directive says what it is.
    };

    void parseAll();
    void advance();
    [[nodiscard]] bool nextIsBlank() const;
    void parseTitlePage();
    void parseLine();
    void parseBlankLine();
    void parseBoneyard();
    [[nodiscard]] bool parseToldParagraph();
    void parseSpeech();
    [[nodiscard]] bool goOnWithAction(TVLFountainForm form, QStringView text);
    void parseForm(TVLFountainForm form, QStringView text);
    void parseHeading(QStringView text);
    void parseCharacter(QStringView text);

    TVLScreenplayParagraph &addParagraph(TVLScreenplayKind kind);
    TVLScreenplayParagraph &addParagraph(const TVLScreenplayParagraph &paragraph);
    void addKeptBlankLines();
    void addPageBreak();
    void addText(QStringView text);
    /** A further line of the last paragraph. */
    void addLine(QStringView text);

    TVLFountainLines mLines;
    TVLFountainInline mInline;
    TVLScreenplay mScreenplay;
    TVLFountainLine mLine;
    std::optional<TVLFountainLine> mNext;
    QString mVisible; ///< Keeps what a view leads to.
    QString mWithoutSign; ///< Keeps what a view of a line without its sign leads to.
    Open mOpen = Open::Nothing;
    int mBlankLines = 0; ///< How many stand between the last paragraph and the line.
    bool mIsBehindBlank = true; ///< Whether the line stands as if behind an empty one.
    bool mPageBreak = false; ///< Whether the next paragraph starts a page.
};
