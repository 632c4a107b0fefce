#include "TVLFinalDraftParser_p.h"

#include "TVLFinalDraftWords_p.h"
#include "TVLXmlReading_p.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using ScriptKind = TVLScreenplayKind;
using ScriptRun = TVLScreenplayRun;

QString finalDraftText(const char *text)
{
    return QCoreApplication::translate("TVLFinalDraftReader", text);
}

/** As documents have it. */
QString withLineSeparators(QStringView text)
{
    QString result = text.toString();
    result.replace(u'\n', QChar(QChar::LineSeparator));
    return result;
}

/** Copies a stretch of a paragraph's text with its styles. */
void appendStretch(const TVLScreenplayParagraph &source, int from, int to,
                   TVLScreenplayParagraph *target)
{
    if (source.mRuns.empty()) {
        target->append(QStringView(source.mText).sliced(from, to - from));
        return;
    }
    int start = 0;
    for (const ScriptRun &run : source.mRuns) {
        const int end = start + run.mLength;
        const int first = std::max(start, from);
        const int last = std::min(end, to);
        if (first < last)
            target->append(QStringView(source.mText).sliced(first, last - first), run.mStyles,
                           run.mLook);
        start = end;
    }
}

/** Two numbers with a comma between them; false for anything else. */
bool readRange(QStringView text, int *start, int *end)
{
    const qsizetype comma = text.indexOf(u',');
    if (comma < 0)
        return false;
    bool hasStart = false;
    bool hasEnd = false;
    *start = text.first(comma).toInt(&hasStart);
    *end = text.sliced(comma + 1).toInt(&hasEnd);
    return hasStart && hasEnd && *start >= 0 && *end >= *start;
}

/** The words at the end of a file that is cut off, which a reader of XML keeps to itself. */
QString textOfCutOff(const QString &text, qint64 done)
{
    // The reader has looked at the sign that ended the words before.
    const QChar last = done > 0 && done <= text.size() ? text.at(done - 1) : QChar();
    QString rest = text.mid(last == u'<' || last == u'&' ? done - 1 : done);
    if (const qsizetype sign = rest.indexOf(u'<'); sign >= 0)
        rest.truncate(sign);
    if (const qsizetype sign = rest.lastIndexOf(u'&'); sign >= 0 && rest.indexOf(u';', sign) < 0)
        rest.truncate(sign);
    while (rest.endsWith(QChar(QChar::ReplacementCharacter)))
        rest.chop(1);
    QXmlStreamReader reader(u"<t>"_s + rest + u"</t>"_s);
    return reader.readNextStartElement() ? reader.readElementText() : QString();
}

} // namespace

TVLFinalDraftParser::TVLFinalDraftParser(const QByteArray &bytes)
    : mBytes(bytes)
    , mXml(bytes)
{
    mXml.setEntityExpansionLimit(0);
}

bool TVLFinalDraftParser::parse()
{
    qint64 done = 0;
    while (tvlHasMore(mXml)) {
        done = mXml.characterOffset();
        switch (mXml.readNext()) {
        case QXmlStreamReader::DTD:
            mXml.raiseError(finalDraftText("The file has a document type of its own."));
            break;
        case QXmlStreamReader::StartElement:
            startElement();
            break;
        case QXmlStreamReader::EndElement:
            endElement();
            break;
        case QXmlStreamReader::Characters:
            addCharacters(mXml.text());
            break;
        default:
            break;
        }
    }
    // What was cut off has its words too.
    if (mXml.error() == QXmlStreamReader::PrematureEndOfDocumentError)
        addCharacters(textOfCutOff(QString::fromUtf8(mBytes), done));
    while (!mRoles.empty())
        endElement();
    mScreenplay.mParagraphs.insert(mScreenplay.mParagraphs.begin(), mTitlePage.begin(),
                                   mTitlePage.end());
    return !mXml.hasError();
}

// --- Elements

void TVLFinalDraftParser::startElement()
{
    const Role role = roleOf(mXml.name());
    if (mRoles.empty() && role != Role::Script) {
        mXml.raiseError(finalDraftText("This is not a Final Draft file."));
        return;
    }
    if (mRoles.size() >= DeepestXmlElement) {
        mXml.raiseError(finalDraftText("The file is nested too deeply."));
        return;
    }
    const Role outer = mRoles.empty() ? Role::Skipped : mRoles.back();
    mRoles.push_back(role);
    switch (role) {
    case Role::TitlePage:
        mIsInTitlePage = true;
        break;
    case Role::Dual:
        closeOuterParagraph();
        mDuals.push_back(mScreenplay.mParagraphs.size());
        break;
    case Role::Paragraph:
        closeOuterParagraph();
        beginParagraph();
        break;
    case Role::Text:
    case Role::NoteText:
        // Within a text the styles go on.
        if (mXml.name() == u"Text" || (outer != Role::Text && outer != Role::NoteText))
            beginText();
        break;
    case Role::Note:
        beginNote();
        break;
    case Role::NoteParagraph:
        if (mNote.mHasLines)
            mNote.mText.append(u"\u2028", mNote.mStyle);
        mNote.mHasLines = true;
        break;
    default:
        break;
    }
}

TVLFinalDraftParser::Role TVLFinalDraftParser::roleOf(QStringView name) const
{
    if (mRoles.empty())
        return name == u"FinalDraft" ? Role::Script : Role::Skipped;
    switch (mRoles.back()) {
    case Role::Script:
        if (name == u"TitlePage")
            return Role::TitlePage;
        return name == u"Content" ? Role::Body : Role::Skipped;
    case Role::TitlePage:
        return name == u"Content" ? Role::Body : Role::Skipped;
    case Role::Body:
    case Role::Dual:
        return name == u"Paragraph" ? Role::Paragraph : Role::Body;
    case Role::Paragraph:
    case Role::Text:
        return roleInParagraph(name);
    case Role::SceneProperties:
        return Role::SceneProperties;
    case Role::Note:
    case Role::NoteParagraph:
    case Role::NoteText:
        return name == u"Paragraph" ? Role::NoteParagraph : Role::NoteText;
    case Role::Skipped:
        break;
    }
    return Role::Skipped;
}

TVLFinalDraftParser::Role TVLFinalDraftParser::roleInParagraph(QStringView name) const
{
    if (name == u"Text")
        return Role::Text;
    if (name == u"Paragraph")
        return Role::Paragraph;
    if (name == u"DualDialogue")
        return Role::Dual;
    if (name == u"ScriptNote")
        return Role::Note;
    if (name == u"SceneProperties")
        return Role::SceneProperties;
    // Whatever it is, its words are some of the paragraph's.
    return Role::Text;
}

void TVLFinalDraftParser::endElement()
{
    if (mRoles.empty())
        return;
    const Role role = mRoles.back();
    mRoles.pop_back();
    switch (role) {
    case Role::TitlePage:
        mIsInTitlePage = false;
        break;
    case Role::Dual:
        endDual();
        break;
    case Role::Paragraph:
        endParagraph();
        break;
    case Role::Note:
        mOpen.back().mNotes.push_back(mNote);
        break;
    default:
        break;
    }
}

void TVLFinalDraftParser::addCharacters(QStringView characters)
{
    if (mRoles.empty() || characters.isEmpty())
        return;
    const Role role = mRoles.back();
    const bool isIndent = characters.trimmed().isEmpty();
    if (role == Role::Skipped || (isIndent && role != Role::Text && role != Role::NoteText))
        return;
    const QString text = withLineSeparators(characters);
    switch (role) {
    case Role::Text:
        mOpen.back().mParagraph.append(text, mStyles, mLook);
        break;
    case Role::Paragraph:
        mOpen.back().mParagraph.append(text);
        break;
    case Role::SceneProperties:
        mOpen.back().mSynopses.emplace_back(ScriptKind::Synopsis).append(text);
        break;
    case Role::NoteText:
        mNote.mText.append(text, mNote.mStyle | mStyles);
        break;
    case Role::Note:
    case Role::NoteParagraph:
        mNote.mText.append(text, mNote.mStyle);
        break;
    default: {
        OpenParagraph stray;
        stray.mParagraph.mKind = ScriptKind::General;
        stray.mParagraph.append(text);
        add(&stray);
        break;
    }
    }
}

// --- Paragraphs

void TVLFinalDraftParser::beginParagraph()
{
    const QXmlStreamAttributes attributes = mXml.attributes();
    OpenParagraph open;
    TVLScreenplayParagraph &paragraph = open.mParagraph;
    tvlSetFinalDraftType(attributes.value(u"Type"_s), &paragraph);
    if (mIsInTitlePage)
        paragraph = TVLScreenplayParagraph(ScriptKind::TitlePage);
    paragraph.mSceneNumber = attributes.value(u"Number"_s).toString();
    paragraph.mStartsPage = attributes.value(u"StartsNewPage"_s) == u"Yes";
    paragraph.mAlignment =
        tvlAlignmentOfFinalDraft(attributes.value(u"Alignment"_s), paragraph.mKind);
    if (mIsInTitlePage && attributes.hasAttribute(u"Key"_s)) {
        open.mKey = withLineSeparators(attributes.value(u"Key"_s));
        paragraph.append(open.mKey);
        // Entries stand in the middle of the page unless something else is said.
        paragraph.mAlignment = 0;
    }
    mOpen.push_back(std::move(open));
}

void TVLFinalDraftParser::closeOuterParagraph()
{
    if (mOpen.empty() || mOpen.back().mIsDone)
        return;
    OpenParagraph &outer = mOpen.back();
    if (!outer.mParagraph.mText.isEmpty() || !outer.mNotes.empty())
        add(&outer);
    outer.mIsDone = true;
}

void TVLFinalDraftParser::endParagraph()
{
    OpenParagraph open = std::move(mOpen.back());
    mOpen.pop_back();
    // Behind what stands in a paragraph it may go on.
    if (open.mIsDone && (!open.mParagraph.mText.isEmpty() || !open.mNotes.empty()))
        open.mIsDone = false;
    if (!open.mIsDone)
        add(&open);
}

void TVLFinalDraftParser::add(OpenParagraph *open)
{
    addNotes(open);
    auto &paragraphs = mIsInTitlePage ? mTitlePage : mScreenplay.mParagraphs;
    TVLScreenplayParagraph rest(open->mParagraph.mKind);
    rest.mType = open->mParagraph.mType;
    rest.mDepth = open->mParagraph.mDepth;
    paragraphs.push_back(std::exchange(open->mParagraph, rest));
    for (TVLScreenplayParagraph &synopsis : open->mSynopses)
        paragraphs.push_back(std::move(synopsis));
    open->mSynopses.clear();
    open->mNotes.clear();
}

void TVLFinalDraftParser::endDual()
{
    const size_t start = mDuals.back();
    mDuals.pop_back();
    std::vector<TVLScreenplayParagraph *> characters;
    for (size_t i = start; i < mScreenplay.mParagraphs.size(); ++i) {
        if (mScreenplay.mParagraphs[i].mKind == ScriptKind::Character)
            characters.push_back(&mScreenplay.mParagraphs[i]);
    }
    // The first of several is the one that the others speak at the same time as.
    for (size_t i = characters.size() > 1 ? 1 : 0; i < characters.size(); ++i)
        characters[i]->mIsDual = true;
}

void TVLFinalDraftParser::beginText()
{
    const QXmlStreamAttributes attributes = mXml.attributes();
    mStyles = tvlStylesOfFinalDraft(attributes.value(u"Style"_s));
    mLook = mScreenplay.placeOf(lookOf(attributes));
}

TVLScreenplayLook TVLFinalDraftParser::lookOf(const QXmlStreamAttributes &attributes) const
{
    constexpr double AnyScriptsSize = 12;
    TVLScreenplayLook look;
    const QStringView font = attributes.value(u"Font"_s);
    // What any script looks like is for its elements to say.
    if (!font.contains(u"Courier"))
        look.mFont = font.toString();
    const double size = attributes.value(u"Size"_s).toDouble();
    if (size > 0 && size < 1000 && size != AnyScriptsSize)
        look.mSize = size;
    const QStringView name = attributes.value(u"Color"_s);
    const QColor color(name.startsWith(u'#') ? name.toString() : QString());
    if (color.isValid() && color != QColor(Qt::black))
        look.mColor = color;
    return look;
}

// --- Notes

void TVLFinalDraftParser::beginNote()
{
    const QXmlStreamAttributes attributes = mXml.attributes();
    const QStringView name = attributes.value(u"Name"_s);
    mNote = Note();
    const bool hasRange = readRange(attributes.value(u"Range"_s), &mNote.mStart, &mNote.mEnd);
    const quint8 style = tvlStyleOfFinalDraftNote(name);
    const bool isComment = name == FinalDraftComment || name == FinalDraftFootnote;
    mNote.mIsInText = style != ScriptRun::Plain || (hasRange && mNote.mStart == mNote.mEnd);
    mNote.mIsFootnote = name == FinalDraftFootnote;
    if (style != ScriptRun::Plain)
        mNote.mStyle = style;
    if (isComment) {
        mNote.mIsInText = false;
        mNote.mHasPlace = readRange(attributes.value(u"Place"_s), &mNote.mStart, &mNote.mEnd);
    } else if (!hasRange) {
        mNote.mEnd = std::numeric_limits<int>::max();
    }
}

void TVLFinalDraftParser::addNotes(OpenParagraph *open)
{
    if (open->mNotes.empty())
        return;
    const TVLScreenplayParagraph plain = open->mParagraph;
    const int size = int(plain.mText.size());
    const int shift = int(open->mKey.size());
    std::vector<const Note *> inText;
    for (Note &note : open->mNotes) {
        if (!note.mHasPlace) {
            note.mStart = std::min(qint64(note.mStart) + shift, qint64(size));
            note.mEnd = std::min(qint64(note.mEnd) + shift, qint64(size));
        }
        // A comment needs something to hang on.
        note.mIsInText = note.mIsInText || (!note.mHasPlace && note.mStart == note.mEnd);
        if (note.mIsInText)
            inText.push_back(&note);
    }
    std::stable_sort(inText.begin(), inText.end(),
                     [](const Note *a, const Note *b) { return a->mStart < b->mStart; });

    TVLScreenplayParagraph &paragraph = open->mParagraph;
    paragraph.mText.clear();
    paragraph.mRuns.clear();
    int done = 0;
    for (const Note *note : inText) {
        appendStretch(plain, done, note->mStart, &paragraph);
        done = note->mStart;
        appendStretch(note->mText, 0, int(note->mText.mText.size()), &paragraph);
    }
    appendStretch(plain, done, size, &paragraph);

    const auto placeBehindNotes = [&](int place, bool isEnd) {
        int result = place;
        for (const Note *note : inText) {
            if (note->mStart < place || (!isEnd && note->mStart == place))
                result += int(note->mText.mText.size());
        }
        return result;
    };
    const int newSize = int(paragraph.mText.size());
    for (const Note &note : open->mNotes) {
        if (note.mIsInText)
            continue;
        const int start =
            std::min(note.mHasPlace ? note.mStart : placeBehindNotes(note.mStart, false), newSize);
        const int end =
            std::min(note.mHasPlace ? note.mEnd : placeBehindNotes(note.mEnd, true), newSize);
        if (start < end)
            paragraph.mComments.push_back({start, end - start, note.mText.mText, note.mIsFootnote});
    }
}
