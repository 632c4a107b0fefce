#include "TVLScreenplayDocument_p.h"
#include "TVLScriptElementFinder_p.h"
#include "TVLTextEdits_p.h"
#include "TVLTextFormat.h"
#include "TVLTextRtf.h"

#include <QFont>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <array>

#include <private/qtextdocument_p.h>

namespace {

using ScriptKind = TVLScreenplayKind;
using ScriptRun = TVLScreenplayRun;

constexpr int DeepestHeading = 6;

/** What means something else to a document. */
bool isNoTextOfDocument(QChar ch)
{
    const char16_t unit = ch.unicode();
    return (unit >= u'\n' && unit <= u'\r' && unit != u'\v' && unit != u'\f')
        || unit == QChar::ParagraphSeparator || unit == 0xfdd0 || unit == 0xfdd1
        || unit == QChar::ObjectReplacementCharacter;
}

QChar inTextOfDocument(QChar ch)
{
    if (!isNoTextOfDocument(ch))
        return ch;
    return ch.unicode() >= 0xfdd0 ? QChar(QChar::ReplacementCharacter)
                                  : QChar(QChar::LineSeparator);
}

QString textOfDocument(const QString &text)
{
    if (std::none_of(text.cbegin(), text.cend(), isNoTextOfDocument))
        return text;
    QString result = text;
    std::transform(result.begin(), result.end(), result.begin(), inTextOfDocument);
    return result;
}

TVLTextCommentLink commentLinkOf(const TVLScreenplayComment &comment)
{
    QTextDocument text;
    text.setPlainText(QString(comment.mText).replace(QChar(QChar::LineSeparator), u'\n'));
    TVLTextCommentLink link(TVLTextFormat::newCommentIdentity(), TVLTextRtf::toRtfCData(&text));
    link.mIsFootnote = comment.mIsFootnote;
    return link;
}

/** Puts a screenplay into a document. */
class ScreenplayTarget
{
public:
    ScreenplayTarget(const TVLScreenplay &screenplay, const QList<TVLScriptElement> &elements,
                     QTextDocument *document)
        : mScreenplay(screenplay)
        , mFinder(elements)
        , mDocument(document)
        , mInner(QTextDocumentPrivate::get(document))
        , mTextFormats(size_t(mFinder.elements().size()) * ScriptRun::StyleCount, NotYet)
    {
        mPlainBlocks.fill(NotYet);
    }

    void fill();

private:
    static constexpr int NotYet = -1;

    void insertRuns(const TVLScreenplayParagraph &paragraph, int element);
    void setFirstBlock(int blockFormat, int textFormat);
    void planComments(const TVLScreenplayParagraph &paragraph, int start);
    [[nodiscard]] int blockFormatOf(const TVLScreenplayParagraph &paragraph,
                                    TVLScriptElementFinder::Choice choice);
    [[nodiscard]] QTextBlockFormat newBlockFormat(const TVLScreenplayParagraph &paragraph,
                                                  TVLScriptElementFinder::Choice choice) const;
    [[nodiscard]] int textFormatOf(int element, quint8 styles);
    [[nodiscard]] int textFormatWithLook(int element, const ScriptRun &run);
    [[nodiscard]] QTextCharFormat newTextFormat(int element, quint8 styles) const;
    [[nodiscard]] int placeInDocument(const QTextFormat &format)
    {
        return mInner->formatCollection()->indexForFormat(format);
    }

    const TVLScreenplay &mScreenplay;
    TVLScriptElementFinder mFinder;
    QTextDocument *mDocument;
    QTextDocumentPrivate *mInner;
    // Places of formats in the document: of paragraphs that are nothing but their kind, and of
    // text by element and style.
    std::array<int, ScreenplayKindCount> mPlainBlocks;
    std::vector<int> mTextFormats;
    TVLTextEdits mComments;
    int mPosition = 0;
};

void ScreenplayTarget::fill()
{
    const bool hasUndo = mDocument->isUndoRedoEnabled();
    mDocument->setUndoRedoEnabled(false);
    mDocument->clear();
    // A cursor would be moved along with each change.
    mInner->beginEditBlock();
    bool isFirst = true;
    for (const TVLScreenplayParagraph &paragraph : mScreenplay.mParagraphs) {
        const TVLScriptElementFinder::Choice choice =
            mFinder.elementFor(paragraph.mKind, paragraph.mType);
        const int blockFormat = blockFormatOf(paragraph, choice);
        const int textFormat = textFormatOf(choice.mElement, ScriptRun::Plain);
        if (isFirst) {
            setFirstBlock(blockFormat, textFormat);
        } else {
            mInner->insertBlock(mPosition, blockFormat, textFormat);
            ++mPosition;
        }
        isFirst = false;
        const int start = mPosition;
        insertRuns(paragraph, choice.mElement);
        planComments(paragraph, start);
    }
    mComments.apply(mDocument);
    mInner->endEditBlock();
    mDocument->setUndoRedoEnabled(hasUndo);
}

void ScreenplayTarget::setFirstBlock(int blockFormat, int textFormat)
{
    QTextCursor cursor(mDocument);
    cursor.setBlockFormat(mInner->formatCollection()->blockFormat(blockFormat));
    cursor.setBlockCharFormat(mInner->formatCollection()->charFormat(textFormat));
}

void ScreenplayTarget::insertRuns(const TVLScreenplayParagraph &paragraph, int element)
{
    const QString text = textOfDocument(paragraph.mText);
    if (text.isEmpty())
        return;
    if (paragraph.mRuns.empty()) {
        mInner->insert(mPosition, text, textFormatOf(element, ScriptRun::Plain));
        mPosition += int(text.size());
        return;
    }
    const QChar *unit = text.constData();
    for (const ScriptRun &run : paragraph.mRuns) {
        const int format = run.mLook == ScriptRun::NoLook ? textFormatOf(element, run.mStyles)
                                                          : textFormatWithLook(element, run);
        // The document has a copy of its own; there is no need for one on the way.
        mInner->insert(mPosition, QString::fromRawData(unit, run.mLength), format);
        unit += run.mLength;
        mPosition += run.mLength;
    }
}

void ScreenplayTarget::planComments(const TVLScreenplayParagraph &paragraph, int start)
{
    for (const TVLScreenplayComment &comment : paragraph.mComments) {
        QTextCharFormat format;
        TVLTextFormat::setComment(&format, commentLinkOf(comment));
        mComments.mergeCharFormat(start + comment.mStart, comment.mLength, format);
    }
}

int ScreenplayTarget::blockFormatOf(const TVLScreenplayParagraph &paragraph,
                                    TVLScriptElementFinder::Choice choice)
{
    const bool isPlain = paragraph.mKind != ScriptKind::Other
        && paragraph.mKind != ScriptKind::Section && !paragraph.mIsDual && !paragraph.mStartsPage
        && paragraph.mAlignment == 0 && paragraph.mSceneNumber.isEmpty();
    if (!isPlain)
        return placeInDocument(newBlockFormat(paragraph, choice));
    int &place = mPlainBlocks[size_t(paragraph.mKind)];
    if (place == NotYet)
        place = placeInDocument(newBlockFormat(paragraph, choice));
    return place;
}

QTextBlockFormat ScreenplayTarget::newBlockFormat(const TVLScreenplayParagraph &paragraph,
                                                  TVLScriptElementFinder::Choice choice) const
{
    const TVLScriptElement &element = mFinder.elements().at(choice.mElement);
    QTextBlockFormat format = element.blockFormat();
    format.setProperty(TVLTextFormat::ScriptElement, element.name());
    if (!choice.mIsExact)
        format.setProperty(TVLTextFormat::ScriptType,
                           paragraph.mKind == ScriptKind::Other
                               ? paragraph.mType
                               : tvlScreenplayWord(paragraph.mKind));
    if (paragraph.mKind == ScriptKind::Section) {
        format.setHeadingLevel(std::clamp(paragraph.mDepth, 1, DeepestHeading));
        if (paragraph.mDepth > DeepestHeading)
            format.setProperty(TVLTextFormat::SectionDepth, paragraph.mDepth);
    }
    if (!paragraph.mSceneNumber.isEmpty())
        format.setProperty(TVLTextFormat::SceneNumber, paragraph.mSceneNumber);
    if (paragraph.mIsDual)
        format.setProperty(TVLTextFormat::DualDialogue, true);
    if (paragraph.mStartsPage)
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    if (paragraph.mAlignment != 0)
        format.setAlignment(Qt::Alignment(paragraph.mAlignment));
    return format;
}

int ScreenplayTarget::textFormatOf(int element, quint8 styles)
{
    int &place = mTextFormats[size_t(element) * ScriptRun::StyleCount + styles];
    if (place == NotYet)
        place = placeInDocument(newTextFormat(element, styles));
    return place;
}

int ScreenplayTarget::textFormatWithLook(int element, const ScriptRun &run)
{
    QTextCharFormat format = newTextFormat(element, run.mStyles);
    const TVLScreenplayLook &look = mScreenplay.mLooks.at(run.mLook);
    if (!look.mFont.isEmpty())
        format.setFontFamilies({look.mFont});
    if (look.mSize > 0)
        format.setFontPointSize(look.mSize);
    if (look.mColor.isValid())
        format.setForeground(look.mColor);
    return placeInDocument(format);
}

QTextCharFormat ScreenplayTarget::newTextFormat(int element, quint8 styles) const
{
    QTextCharFormat format = mFinder.elements().at(element).charFormat();
    if ((styles & ScriptRun::Bold) != 0)
        format.setFontWeight(QFont::Bold);
    if ((styles & ScriptRun::Italic) != 0)
        format.setFontItalic(true);
    if ((styles & ScriptRun::Underline) != 0)
        format.setFontUnderline(true);
    if ((styles & ScriptRun::Note) != 0)
        format.setProperty(TVLTextFormat::InlineAnnotation, true);
    if ((styles & ScriptRun::Footnote) != 0)
        format.setProperty(TVLTextFormat::InlineFootnote, true);
    if ((styles & ScriptRun::Boneyard) != 0)
        format.setProperty(TVLTextFormat::Hidden, true);
    return format;
}

} // namespace

void tvlSetScreenplay(const TVLScreenplay &screenplay, const QList<TVLScriptElement> &elements,
                      QTextDocument *document)
{
    ScreenplayTarget(screenplay, elements, document).fill();
}
