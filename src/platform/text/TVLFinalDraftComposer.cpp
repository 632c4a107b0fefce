#include "TVLFinalDraftComposer_p.h"

#include "TVLFinalDraftWords_p.h"
#include "TVLXmlText_p.h"

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

using ScriptKind = TVLScreenplayKind;
using ScriptRun = TVLScreenplayRun;

QString withLineFeeds(QStringView text)
{
    QString result = text.toString();
    result.replace(QChar(QChar::LineSeparator), u'\n');
    return result;
}

/** Hands out the runs of a text; the whole text is one when it is plain. */
void visitRuns(const TVLScreenplayParagraph &paragraph, int from,
               const std::function<void(int start, const ScriptRun &run)> &visit)
{
    const int size = int(paragraph.mText.size());
    if (paragraph.mRuns.empty()) {
        if (from < size)
            visit(from, {size - from});
        return;
    }
    int start = 0;
    for (const ScriptRun &run : paragraph.mRuns) {
        const int end = start + run.mLength;
        if (end > from) {
            ScriptRun rest = run;
            rest.mLength = end - std::max(start, from);
            visit(std::max(start, from), rest);
        }
        start = end;
    }
}

bool isApart(const ScriptRun &run)
{
    return (run.mStyles & ScriptRun::Apart) != 0;
}

/** How much of the text up to a place isn't apart from the rest. */
int placeWithoutNotes(const TVLScreenplayParagraph &paragraph, int from, int place)
{
    int result = 0;
    visitRuns(paragraph, from, [&](int start, const ScriptRun &run) {
        if (!isApart(run))
            result += std::clamp(place - start, 0, run.mLength);
    });
    return result;
}

/** The length of the key of an entry with what parts it from its value; 0 for no entry. */
int keyLengthOf(const TVLScreenplayParagraph &paragraph)
{
    const QString &text = paragraph.mText;
    const qsizetype colon = text.indexOf(u':');
    const bool isPlain = paragraph.mRuns.empty()
        || (paragraph.mRuns.front().mStyles == ScriptRun::Plain
            && paragraph.mRuns.front().mLook == ScriptRun::NoLook);
    if (colon <= 0 || !isPlain || paragraph.mAlignment != 0 || !paragraph.mComments.empty())
        return 0;
    qsizetype end = colon + 1;
    while (end < text.size()
           && (text.at(end) == u' ' || text.at(end) == QChar(QChar::LineSeparator)))
        ++end;
    const qsizetype plainEnd =
        paragraph.mRuns.empty() ? text.size() : qsizetype(paragraph.mRuns.front().mLength);
    return end <= plainEnd ? int(end) : 0;
}

} // namespace

TVLFinalDraftComposer::TVLFinalDraftComposer(const TVLScreenplay &screenplay)
    : mScreenplay(screenplay)
    , mXml(&mBytes)
{
}

QByteArray TVLFinalDraftComposer::compose()
{
    const auto &paragraphs = mScreenplay.mParagraphs;
    const auto body = std::find_if(paragraphs.begin(), paragraphs.end(),
                                   [](const TVLScreenplayParagraph &paragraph) {
                                       return paragraph.mKind != ScriptKind::TitlePage;
                                   });
    const auto start = size_t(body - paragraphs.begin());
    mXml.setAutoFormatting(false);
    mXml.writeStartDocument(u"1.0"_s, false);
    mXml.writeStartElement(u"FinalDraft"_s);
    mXml.writeAttribute(u"DocumentType"_s, u"Script"_s);
    mXml.writeAttribute(u"Template"_s, u"No"_s);
    mXml.writeAttribute(u"Version"_s, u"1"_s);
    composeBody(start);
    if (start > 0)
        composeTitlePage(start);
    mXml.writeEndElement();
    mXml.writeEndDocument();
    return std::move(mBytes);
}

void TVLFinalDraftComposer::composeBody(size_t start)
{
    mXml.writeStartElement(u"Content"_s);
    size_t place = start;
    while (place < mScreenplay.mParagraphs.size()) {
        if (const size_t end = composeDual(place); end > place) {
            place = end;
            continue;
        }
        composeParagraph(mScreenplay.mParagraphs[place++]);
    }
    mXml.writeEndElement();
}

size_t TVLFinalDraftComposer::composeDual(size_t place)
{
    const auto &paragraphs = mScreenplay.mParagraphs;
    if (paragraphs[place].mKind != ScriptKind::Character)
        return place;
    size_t end = endOfSpeech(place);
    if (!paragraphs[place].mIsDual) {
        const bool isPair = end < paragraphs.size()
            && paragraphs[end].mKind == ScriptKind::Character && paragraphs[end].mIsDual;
        if (!isPair)
            return place;
        end = endOfSpeech(end);
    }
    mXml.writeStartElement(u"Paragraph"_s);
    mXml.writeStartElement(u"DualDialogue"_s);
    for (size_t i = place; i < end; ++i)
        composeParagraph(paragraphs[i]);
    mXml.writeEndElement();
    mXml.writeEndElement();
    return end;
}

size_t TVLFinalDraftComposer::endOfSpeech(size_t place) const
{
    const auto &paragraphs = mScreenplay.mParagraphs;
    size_t end = place + 1;
    while (end < paragraphs.size() && paragraphs[end].isCharacterOrSpeech()
           && paragraphs[end].mKind != ScriptKind::Character)
        ++end;
    return end;
}

void TVLFinalDraftComposer::composeTitlePage(size_t end)
{
    mXml.writeStartElement(u"TitlePage"_s);
    mXml.writeStartElement(u"Content"_s);
    for (size_t i = 0; i < end; ++i)
        composeEntry(mScreenplay.mParagraphs[i]);
    mXml.writeEndElement();
    mXml.writeEndElement();
}

void TVLFinalDraftComposer::composeEntry(const TVLScreenplayParagraph &paragraph)
{
    const int keyLength = keyLengthOf(paragraph);
    mXml.writeStartElement(u"Paragraph"_s);
    composeAttributes(paragraph);
    if (keyLength > 0) {
        mXml.writeAttribute(u"Alignment"_s, u"Center"_s);
        mXml.writeAttribute(
            u"Key"_s, tvlXmlText(withLineFeeds(QStringView(paragraph.mText).first(keyLength))));
    }
    composeRuns(paragraph, keyLength);
    composeNotes(paragraph, keyLength);
    composeComments(paragraph, keyLength);
    mXml.writeEndElement();
}

void TVLFinalDraftComposer::composeParagraph(const TVLScreenplayParagraph &paragraph)
{
    mXml.writeCharacters(u"\n"_s);
    mXml.writeStartElement(u"Paragraph"_s);
    composeAttributes(paragraph);
    composeRuns(paragraph, 0);
    if (!paragraph.mRuns.empty())
        composeNotes(paragraph, 0);
    composeComments(paragraph, 0);
    mXml.writeEndElement();
}

void TVLFinalDraftComposer::composeAttributes(const TVLScreenplayParagraph &paragraph)
{
    mXml.writeAttribute(u"Type"_s, tvlXmlText(tvlFinalDraftType(paragraph)));
    if (!paragraph.mSceneNumber.isEmpty())
        mXml.writeAttribute(u"Number"_s, tvlXmlText(paragraph.mSceneNumber));
    if (paragraph.mAlignment != 0)
        mXml.writeAttribute(u"Alignment"_s,
                            tvlFinalDraftAlignment(paragraph.mAlignment).toString());
    if (paragraph.mStartsPage)
        mXml.writeAttribute(u"StartsNewPage"_s, u"Yes"_s);
}

void TVLFinalDraftComposer::composeRuns(const TVLScreenplayParagraph &paragraph, int from)
{
    bool hasText = false;
    visitRuns(paragraph, from, [&](int start, const ScriptRun &run) {
        if (isApart(run))
            return;
        composeText(QStringView(paragraph.mText).sliced(start, run.mLength), run.mStyles,
                    run.mLook);
        hasText = true;
    });
    if (!hasText)
        composeText({}, ScriptRun::Plain, ScriptRun::NoLook);
}

void TVLFinalDraftComposer::composeText(QStringView text, quint8 styles, int look)
{
    mXml.writeStartElement(u"Text"_s);
    if ((styles & ScriptRun::Emphasis) != 0)
        mXml.writeAttribute(u"Style"_s, tvlFinalDraftStyle(styles));
    if (look != ScriptRun::NoLook) {
        const TVLScreenplayLook &known = mScreenplay.mLooks.at(look);
        if (!known.mFont.isEmpty())
            mXml.writeAttribute(u"Font"_s, tvlXmlText(known.mFont));
        if (known.mSize > 0)
            mXml.writeAttribute(u"Size"_s, QString::number(known.mSize));
        if (known.mColor.isValid()) {
            // Final Draft has sixteen bits for each part.
            const QString name = known.mColor.name().sliced(1);
            const QString red = name.first(2);
            const QString green = name.sliced(2, 2);
            const QString blue = name.last(2);
            mXml.writeAttribute(u"Color"_s, u'#' + red + red + green + green + blue + blue);
        }
    }
    tvlWriteXmlCharacters(&mXml, withLineFeeds(text));
    mXml.writeEndElement();
}

// --- Notes

void TVLFinalDraftComposer::composeNotes(const TVLScreenplayParagraph &paragraph, int from)
{
    quint8 open = ScriptRun::Plain;
    int place = 0;
    const auto close = [&] {
        if (open != ScriptRun::Plain) {
            mXml.writeEndElement();
            mXml.writeEndElement();
        }
        open = ScriptRun::Plain;
    };
    visitRuns(paragraph, from, [&](int start, const ScriptRun &run) {
        const quint8 apart = run.mStyles & ScriptRun::Apart;
        if (apart != open)
            close();
        if (apart == ScriptRun::Plain) {
            place += run.mLength;
            return;
        }
        if (open == ScriptRun::Plain) {
            beginNote(tvlFinalDraftNoteName(apart), place, place);
            mXml.writeStartElement(u"Paragraph"_s);
            open = apart;
        }
        const auto lines = QStringView(paragraph.mText)
                               .sliced(start, run.mLength)
                               .split(QChar(QChar::LineSeparator));
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (i > 0) {
                mXml.writeEndElement();
                mXml.writeStartElement(u"Paragraph"_s);
            }
            if (!lines.at(i).isEmpty())
                composeText(lines.at(i), run.mStyles, ScriptRun::NoLook);
        }
    });
    close();
}

void TVLFinalDraftComposer::composeComments(const TVLScreenplayParagraph &paragraph, int from)
{
    for (const TVLScreenplayComment &comment : paragraph.mComments) {
        const int end = comment.mStart + comment.mLength;
        beginNote(comment.mIsFootnote ? FinalDraftFootnote : FinalDraftComment,
                  placeWithoutNotes(paragraph, from, comment.mStart),
                  placeWithoutNotes(paragraph, from, end));
        // Counts the text that is apart from the rest, too.
        mXml.writeAttribute(u"Place"_s, u"%1,%2"_s.arg(comment.mStart).arg(end));
        const auto lines = QStringView(comment.mText).split(QChar(QChar::LineSeparator));
        for (const QStringView line : lines) {
            mXml.writeStartElement(u"Paragraph"_s);
            composeText(line, ScriptRun::Plain, ScriptRun::NoLook);
            mXml.writeEndElement();
        }
        mXml.writeEndElement();
    }
}

void TVLFinalDraftComposer::beginNote(QStringView name, int start, int end)
{
    mXml.writeStartElement(u"ScriptNote"_s);
    mXml.writeAttribute(u"Name"_s, name.toString());
    mXml.writeAttribute(u"Range"_s, u"%1,%2"_s.arg(start).arg(end));
}
