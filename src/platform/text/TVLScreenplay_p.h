#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QStringView>

#include <vector>

/** What a paragraph is in a screenplay. */
enum class TVLScreenplayKind : quint8 {
    SceneHeading,
    Action,
    Character,
    Parenthetical,
    Dialogue,
    Transition,
    Shot,
    General,
    Lyrics,
    TitlePage,
    Section,
    Synopsis,
    Other, ///< Something that only has a name.
};
constexpr int ScreenplayKindCount = int(TVLScreenplayKind::Other) + 1;

/** The word for a kind in files and in formats; empty for Other. */
[[nodiscard]] QString tvlScreenplayWord(TVLScreenplayKind kind);
/** The kind of a word, whatever its case; Other for one that isn't known. */
[[nodiscard]] TVLScreenplayKind tvlScreenplayKind(QStringView word);

/** A stretch of a paragraph's text in one style. */
struct TVLScreenplayRun
{
    enum Style : quint8 {
        Plain = 0,
        Bold = 1,
        Italic = 2,
        Underline = 4,
        Emphasis = Bold | Italic | Underline,
        Note = 8, ///< A remark that isn't part of the text.
        Footnote = 16,
        Boneyard = 32, ///< Text that was taken out and is kept.
        Apart = Note | Footnote | Boneyard,
        StyleCount = 64,
    };
    static constexpr int NoLook = -1;

    int mLength = 0;
    quint8 mStyles = Plain;
    int mLook = NoLook; ///< Place among the looks of the screenplay.

    friend bool operator==(const TVLScreenplayRun &, const TVLScreenplayRun &) = default;
};

/** A comment that hangs on a stretch of a paragraph. */
struct TVLScreenplayComment
{
    int mStart = 0;
    int mLength = 0;
    QString mText;
    bool mIsFootnote = false;

    friend bool operator==(const TVLScreenplayComment &, const TVLScreenplayComment &) = default;
};

/** A font and a colour that differ from those of the element; unset parts are the element's. */
struct TVLScreenplayLook
{
    QString mFont;
    double mSize = 0;
    QColor mColor;

    friend bool operator==(const TVLScreenplayLook &, const TVLScreenplayLook &) = default;
};

/** A paragraph. Lines within it are parted by U+2028. */
struct TVLScreenplayParagraph
{
    TVLScreenplayKind mKind = TVLScreenplayKind::Action;
    bool mIsDual = false; ///< Of a character: speaks at the same time as the one before.
    bool mStartsPage = false;
    int mDepth = 0; ///< Of a section, from 1 on.
    int mAlignment = 0; ///< A Qt::AlignmentFlag; 0 for that of the element.
    QString mType; ///< The name of what is Other.
    QString mSceneNumber;
    QString mText;
    std::vector<TVLScreenplayRun> mRuns; ///< None when the whole text is plain.
    std::vector<TVLScreenplayComment> mComments;

    TVLScreenplayParagraph() = default;
    explicit TVLScreenplayParagraph(TVLScreenplayKind kind)
        : mKind(kind)
    {
    }

    /** Adds text. Ends of lines have no emphasis and no look. */
    void append(QStringView text, quint8 styles = TVLScreenplayRun::Plain,
                int look = TVLScreenplayRun::NoLook);
    [[nodiscard]] bool isCharacterOrSpeech() const;

    friend bool operator==(const TVLScreenplayParagraph &,
                           const TVLScreenplayParagraph &) = default;

private:
    void appendRun(QStringView text, quint8 styles, int look);
};

/** A screenplay as plain values, apart from any document and any file. */
struct TVLScreenplay
{
    std::vector<TVLScreenplayParagraph> mParagraphs;
    QList<TVLScreenplayLook> mLooks;

    /** The place of a look among those of the screenplay; NoLook for one that says nothing. */
    [[nodiscard]] int placeOf(const TVLScreenplayLook &look);
};
