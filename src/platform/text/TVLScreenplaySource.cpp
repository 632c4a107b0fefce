#include "TVLScreenplayDocument_p.h"
#include "TVLScriptElementFinder_p.h"
#include "TVLTextFormat.h"
#include "TVLTextRtf.h"
#include "TVLTextRuns_p.h"

#include <QFont>
#include <QHash>
#include <QSet>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>

namespace {

using ScriptKind = TVLScreenplayKind;
using ScriptRun = TVLScreenplayRun;

bool isTextOfScreenplay(QChar ch)
{
    // The last two are how a document shows the edges of tables and frames.
    return ch != QChar::ObjectReplacementCharacter && ch != QChar(0xfdd0) && ch != QChar(0xfdd1);
}

QString textOfScreenplay(QString text)
{
    text.removeIf([](QChar ch) { return !isTextOfScreenplay(ch); });
    for (const char16_t end : {u'\n', u'\r', char16_t(QChar::ParagraphSeparator)})
        text.replace(QChar(end), QChar(QChar::LineSeparator));
    return text;
}

Qt::Alignment alignmentIn(const QTextBlockFormat &format)
{
    const Qt::Alignment alignment = format.alignment() & Qt::AlignHorizontal_Mask;
    return alignment == Qt::Alignment() ? Qt::AlignLeft : alignment;
}

bool startsPage(const QTextBlockFormat &format)
{
    return format.pageBreakPolicy().testFlag(QTextFormat::PageBreak_AlwaysBefore);
}

bool isBold(const QTextCharFormat &format)
{
    return format.fontWeight() > QFont::Medium;
}

quint8 stylesOf(const QTextCharFormat &format, const QTextCharFormat &ofElement)
{
    quint8 styles = ScriptRun::Plain;
    if (isBold(format) && !isBold(ofElement))
        styles |= ScriptRun::Bold;
    if (format.fontItalic() && !ofElement.fontItalic())
        styles |= ScriptRun::Italic;
    if (format.fontUnderline() && !ofElement.fontUnderline())
        styles |= ScriptRun::Underline;
    if (format.boolProperty(TVLTextFormat::InlineFootnote))
        styles |= ScriptRun::Footnote;
    else if (format.boolProperty(TVLTextFormat::InlineAnnotation))
        styles |= ScriptRun::Note;
    if (format.boolProperty(TVLTextFormat::Hidden))
        styles |= ScriptRun::Boneyard;
    return styles;
}

TVLScreenplayLook lookOf(const QTextCharFormat &format, const QTextCharFormat &ofElement)
{
    TVLScreenplayLook look;
    if (format.fontFamilies() != ofElement.fontFamilies())
        look.mFont = format.fontFamilies().toStringList().value(0);
    if (format.fontPointSize() > 0 && format.fontPointSize() != ofElement.fontPointSize())
        look.mSize = format.fontPointSize();
    if (format.foreground() != ofElement.foreground()
        && format.foreground().style() == Qt::SolidPattern)
        look.mColor = format.foreground().color();
    return look;
}

/** Takes a screenplay out of a document. */
class ScreenplaySource
{
public:
    ScreenplaySource(const QTextDocument *document, const QList<TVLScriptElement> &elements)
        : mDocument(document)
        , mFinder(elements)
    {
    }

    [[nodiscard]] TVLScreenplay screenplay();

private:
    /** A paragraph without its text, and its element. */
    struct Model
    {
        TVLScreenplayParagraph mParagraph;
        int mElement;
    };
    struct Style
    {
        quint8 mStyles;
        int mLook;
        bool mHasComment;
    };

    [[nodiscard]] const Model &modelOf(const QTextBlock &block);
    [[nodiscard]] Model newModel(const QTextBlockFormat &format, const QTextCharFormat &text) const;
    [[nodiscard]] const Style &styleOf(const QTextFragment &fragment, int element);
    void addFragment(const QTextFragment &fragment, int element, TVLScreenplayParagraph *paragraph);
    void addComment(const QTextFragment &fragment, int length, TVLScreenplayParagraph *paragraph);

    const QTextDocument *mDocument;
    TVLScriptElementFinder mFinder;
    TVLScreenplay mScreenplay;
    // By the places of the formats in the document.
    QHash<quint64, Model> mModels;
    QHash<quint64, Style> mStyles;
    QSet<QString> mCommentsDone;
    QString mOpenComment; ///< The comment that the text so far ends with.
};

quint64 keyOf(int a, int b)
{
    return (quint64(quint32(a)) << 32) | quint32(b);
}

TVLScreenplay ScreenplaySource::screenplay()
{
    mScreenplay.mParagraphs.reserve(size_t(mDocument->blockCount()));
    for (QTextBlock block = mDocument->begin(); block.isValid(); block = block.next()) {
        const Model &model = modelOf(block);
        const int element = model.mElement;
        TVLScreenplayParagraph &paragraph = mScreenplay.mParagraphs.emplace_back(model.mParagraph);
        mOpenComment.clear();
        for (auto it = block.begin(); !it.atEnd(); ++it)
            addFragment(it.fragment(), element, &paragraph);
    }
    return std::move(mScreenplay);
}

const ScreenplaySource::Model &ScreenplaySource::modelOf(const QTextBlock &block)
{
    const auto first = block.begin();
    const int text = first.atEnd() ? block.charFormatIndex() : first.fragment().charFormatIndex();
    const quint64 key = keyOf(block.blockFormatIndex(), text);
    auto model = mModels.constFind(key);
    if (model == mModels.cend())
        model = mModels.insert(
            key,
            newModel(block.blockFormat(),
                     first.atEnd() ? block.charFormat() : first.fragment().charFormat()));
    return *model;
}

ScreenplaySource::Model ScreenplaySource::newModel(const QTextBlockFormat &format,
                                                   const QTextCharFormat &text) const
{
    int element = mFinder.elementOf(format, text);
    const bool isElement = element >= 0;
    if (!isElement)
        element = mFinder.elementFor(ScriptKind::Action, {}).mElement;

    TVLScreenplayParagraph paragraph(isElement ? mFinder.kindOf(element) : ScriptKind::Action);
    QString type = format.stringProperty(TVLTextFormat::ScriptType);
    if (type.isEmpty() && format.headingLevel() > 0)
        type = tvlScreenplayWord(ScriptKind::Section);
    if (!type.isEmpty())
        paragraph.mKind = tvlScreenplayKind(type);
    else if (paragraph.mKind == ScriptKind::Other)
        type = mFinder.elements().at(element).name();
    if (paragraph.mKind == ScriptKind::Other)
        paragraph.mType = type;
    if (paragraph.mKind == ScriptKind::Section) {
        const int depth = format.intProperty(TVLTextFormat::SectionDepth);
        paragraph.mDepth = std::max({depth, format.headingLevel(), 1});
    }
    paragraph.mSceneNumber = format.stringProperty(TVLTextFormat::SceneNumber);
    paragraph.mIsDual = format.boolProperty(TVLTextFormat::DualDialogue);
    const QTextBlockFormat ofElement = mFinder.elements().at(element).blockFormat();
    paragraph.mStartsPage = startsPage(format) && !startsPage(ofElement);
    if (alignmentIn(format) != alignmentIn(ofElement))
        paragraph.mAlignment = int(alignmentIn(format));
    return {paragraph, element};
}

const ScreenplaySource::Style &ScreenplaySource::styleOf(const QTextFragment &fragment, int element)
{
    const quint64 key = keyOf(element, fragment.charFormatIndex());
    auto style = mStyles.constFind(key);
    if (style == mStyles.cend()) {
        const QTextCharFormat format = fragment.charFormat();
        const QTextCharFormat ofElement = mFinder.elements().at(element).charFormat();
        style = mStyles.insert(key,
                               {stylesOf(format, ofElement),
                                mScreenplay.placeOf(lookOf(format, ofElement)),
                                TVLTextFormat::hasComment(format)});
    }
    return *style;
}

void ScreenplaySource::addFragment(const QTextFragment &fragment, int element,
                                   TVLScreenplayParagraph *paragraph)
{
    const Style &style = styleOf(fragment, element);
    const QString text = textOfScreenplay(fragment.text());
    paragraph->append(text, style.mStyles, style.mLook);
    if (style.mHasComment)
        addComment(fragment, int(text.size()), paragraph);
    else if (!text.isEmpty())
        mOpenComment.clear();
}

void ScreenplaySource::addComment(const QTextFragment &fragment, int length,
                                  TVLScreenplayParagraph *paragraph)
{
    const QTextCharFormat format = fragment.charFormat();
    const QString identity = tvlCommentMark(format);
    if (identity == mOpenComment) {
        paragraph->mComments.back().mLength += length;
        return;
    }
    // One that hangs on more than a stretch is told of once.
    mOpenComment.clear();
    if (mCommentsDone.contains(identity))
        return;
    mCommentsDone.insert(identity);
    mOpenComment = identity;
    const TVLTextCommentLink comment = TVLTextFormat::comment(format);
    paragraph->mComments.push_back({int(paragraph->mText.size()) - length, length,
                                    textOfScreenplay(TVLTextRtf::rtfToPlainText(comment.mRtf)),
                                    comment.mIsFootnote});
}

} // namespace

TVLScreenplay tvlScreenplayOf(const QTextDocument *document,
                              const QList<TVLScriptElement> &elements)
{
    return document ? ScreenplaySource(document, elements).screenplay() : TVLScreenplay();
}
