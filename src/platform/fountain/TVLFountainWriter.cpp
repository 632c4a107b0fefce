#include "TVLFountainWriter_p.h"

#include "TVLFountainDirective_p.h"
#include "TVLFountainLines_p.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Kind = TVLScreenplayKind;
using Form = TVLFountainForm;
using Composer = TVLFountainComposer;

/** Without notes and what was taken out; most lines have none. */
QString visibleOf(const QString &line)
{
    if (!line.contains(u"/*") && !line.contains(u"[["))
        return line;
    TVLFountainLine parsed;
    parsed.mText = line;
    return tvlFountainTrimmedStart(parsed.visible()).toString();
}

Form formOf(const QString &line, bool nextIsBlank)
{
    const QStringView text = tvlFountainTrimmedStart(line);
    const QString visible = visibleOf(line);
    return tvlFountainForm(text, tvlFountainTrimmedStart(visible), nextIsBlank);
}

/** Whether a line that goes on with an action would be taken for something else. */
bool isMistakenInAction(const QString &line)
{
    switch (formOf(line, false)) {
    case Form::Centered:
    case Form::Lyrics:
    case Form::Section:
    case Form::Synopsis:
    case Form::PageBreak:
    case Form::ForcedAction:
        return true;
    default:
        return false;
    }
}

/** Puts a backslash before the last character if it is a sign. */
QString withoutLastSign(QString line, QChar sign)
{
    if (line.endsWith(sign))
        line.insert(line.size() - 1, u'\\');
    return line;
}

bool isEmptyAction(const TVLScreenplayParagraph &paragraph)
{
    return paragraph == TVLScreenplayParagraph(Kind::Action);
}

/** Whether the paragraph has something for which its kind has no sign. */
bool hasMoreThanSigns(const TVLScreenplayParagraph &paragraph)
{
    const bool isCentered =
        paragraph.mKind == Kind::Action && paragraph.mAlignment == Qt::AlignHCenter;
    return (paragraph.mAlignment != 0 && !isCentered)
        || (!paragraph.mSceneNumber.isEmpty() && paragraph.mKind != Kind::SceneHeading)
        || (paragraph.mIsDual && paragraph.mKind != Kind::Character);
}

Composer::KeptBlanks keptBlanksOf(const TVLScreenplayParagraph &paragraph)
{
    if (paragraph.mKind == Kind::Action && paragraph.mAlignment == 0)
        return Composer::AllBlanks;
    const bool isSpeech =
        paragraph.mKind == Kind::Dialogue || paragraph.mKind == Kind::Parenthetical;
    return isSpeech ? Composer::TrailingBlanks : Composer::NoBlanks;
}

bool canFollowCharacter(const TVLScreenplayParagraph &paragraph)
{
    return paragraph.isCharacterOrSpeech() && paragraph.mKind != Kind::Character
        && !paragraph.mStartsPage
        && (paragraph.mKind == Kind::Dialogue
            || !paragraph.mText.contains(QChar(QChar::LineSeparator)));
}

} // namespace

QString TVLFountainWriter::write(const TVLScreenplay &screenplay)
{
    TVLFountainWriter writer(screenplay);
    writer.writeAll();
    return std::move(writer.mText);
}

void TVLFountainWriter::writeAll()
{
    size_t place = writeTitlePage();
    while (place < mParagraphs.size()) {
        if (isEmptyAction(mParagraphs[place]))
            place = writeEmptyActions(place);
        else
            writeParagraph(place++);
    }
}

size_t TVLFountainWriter::writeTitlePage()
{
    size_t place = 0;
    for (; place < mParagraphs.size(); ++place) {
        const TVLScreenplayParagraph &paragraph = mParagraphs[place];
        if (paragraph.mKind != Kind::TitlePage || paragraph.mStartsPage
            || hasMoreThanSigns(paragraph))
            break;
        const QStringList lines = mComposer.compose(paragraph, Composer::NoBlanks);
        const QString &first = lines.constFirst();
        if (!(place == 0 ? tvlBeginsTitlePage(first) : tvlIsTitleEntry(first)))
            break;
        writeLine(first);
        for (const QString &line : lines.sliced(1))
            writeLine(u"    "_s + line);
    }
    return place;
}

size_t TVLFountainWriter::writeEmptyActions(size_t place)
{
    size_t end = place;
    while (end < mParagraphs.size() && isEmptyAction(mParagraphs[end]))
        ++end;
    const bool isBetweenActions = place > 0 && mParagraphs[place - 1].mKind == Kind::Action
        && end < mParagraphs.size() && mParagraphs[end].mKind == Kind::Action
        && !mParagraphs[end].mStartsPage;
    mIsInSpeech = false;
    if (isBetweenActions) {
        mKeptBlankLines = qsizetype(end - place);
        return end;
    }
    for (size_t i = place; i < end; ++i) {
        beginBlock();
        writeTold(mParagraphs[i], {Composer::nothing()});
    }
    return end;
}

void TVLFountainWriter::writeParagraph(size_t place)
{
    const TVLScreenplayParagraph &paragraph = mParagraphs[place];
    const QStringList lines = mComposer.compose(paragraph, keptBlanksOf(paragraph));
    if (paragraph.mStartsPage) {
        beginBlock();
        writeLine(u"===");
        mIsInSpeech = false;
    }
    if (mIsInSpeech && writeSpeech(paragraph, lines, mParagraphs[place - 1].mKind))
        return;
    mIsInSpeech = false;
    beginBlock();
    if (hasMoreThanSigns(paragraph) || !writeByKind(place, lines))
        writeTold(paragraph, lines);
}

// --- What belongs to a character

bool TVLFountainWriter::writeSpeech(const TVLScreenplayParagraph &paragraph,
                                    const QStringList &lines, TVLScreenplayKind previous)
{
    if (!paragraph.isCharacterOrSpeech() || paragraph.mKind == Kind::Character)
        return false;
    const QString &first = lines.constFirst();
    const bool isOneLine = lines.size() == 1;
    const bool isPlain = !hasMoreThanSigns(paragraph);
    if (isPlain && paragraph.mKind == Kind::Dialogue && previous != Kind::Dialogue) {
        writeSpeechLine(first);
        writeFurtherSpeechLines(lines);
        return true;
    }
    if (isPlain && isOneLine && paragraph.mKind == Kind::Parenthetical
        && tvlIsParenthetical(first, visibleOf(first))) {
        writeLine(first);
        return true;
    }
    if (isPlain && isOneLine && paragraph.mKind == Kind::Lyrics) {
        writeLine(u'~' + first);
        return true;
    }
    if (!isOneLine && paragraph.mKind != Kind::Dialogue)
        return false;
    writeLine(TVLFountainDirective::ofParagraph(paragraph) + first);
    writeFurtherSpeechLines(lines);
    return true;
}

void TVLFountainWriter::writeSpeechLine(const QString &line)
{
    const bool isMistaken = line.startsWith(u'(') || line.startsWith(u'~');
    writeLine(isMistaken ? u'\\' + line : line);
}

void TVLFountainWriter::writeFurtherSpeechLines(const QStringList &lines)
{
    for (const QString &line : lines.sliced(1)) {
        // Two blanks keep a line that would end the speech.
        if (line == Composer::nothing())
            writeLine(u"  ");
        else
            writeSpeechLine(line);
    }
}

// --- Everything else

bool TVLFountainWriter::writeByKind(size_t place, const QStringList &lines)
{
    const TVLScreenplayParagraph &paragraph = mParagraphs[place];
    const QString &first = lines.constFirst();
    if (paragraph.mKind == Kind::Action) {
        if (paragraph.mAlignment == 0)
            writeAction(lines);
        else
            writeCentered(lines);
        return true;
    }
    if (lines.size() > 1)
        return false;
    switch (paragraph.mKind) {
    case Kind::SceneHeading:
        return writeHeading(paragraph, first);
    case Kind::Character:
        writeCharacter(place, first);
        return true;
    case Kind::Transition:
        writeTransition(first);
        return true;
    case Kind::Lyrics:
        writeLine(u'~' + first);
        return true;
    case Kind::Synopsis:
        writeLine(u"= "_s + first);
        return true;
    case Kind::Section:
        writeLine(QString(std::max(paragraph.mDepth, 1), u'#') + u' ' + first);
        return true;
    default:
        return false;
    }
}

void TVLFountainWriter::writeAction(const QStringList &lines)
{
    const QString &first = lines.constFirst();
    const QString nothingBefore = Composer::nothing() + u"/*"_s;
    // All of it was taken out.
    if (lines.size() == 1 && first.startsWith(nothingBefore)) {
        writeLine(QStringView(first).sliced(Composer::nothing().size()));
        return;
    }
    const bool isMistaken =
        formOf(first, lines.size() == 1) != Form::Action || isMistakenForTitle(first);
    writeLine(isMistaken ? u'!' + first : first);
    for (const QString &line : lines.sliced(1))
        writeLine(isMistakenInAction(line) ? u'!' + line : line);
}

void TVLFountainWriter::writeCentered(const QStringList &lines)
{
    for (const QString &line : lines)
        writeLine(u"> "_s + line + u" <"_s);
}

bool TVLFountainWriter::writeHeading(const TVLScreenplayParagraph &paragraph, const QString &text)
{
    const QString &number = paragraph.mSceneNumber;
    if (!number.isEmpty() && !tvlIsSceneNumber(number))
        return false;
    QString line = withoutLastSign(text, u'#');
    if (formOf(line, true) != Form::SceneHeading) {
        line.prepend(u'.');
        if (formOf(line, true) != Form::ForcedSceneHeading)
            return false;
    }
    writeLine(number.isEmpty() ? line : line + u" #"_s + number + u'#');
    return true;
}

void TVLFountainWriter::writeCharacter(size_t place, const QString &text)
{
    QString line = withoutLastSign(text, u'^');
    const bool hasSpeech =
        place + 1 < mParagraphs.size() && canFollowCharacter(mParagraphs[place + 1]);
    if (!hasSpeech || formOf(line, false) != Form::Character || isMistakenForTitle(line))
        line.prepend(u'@');
    writeLine(mParagraphs[place].mIsDual ? line + u" ^"_s : line);
    mIsInSpeech = true;
}

void TVLFountainWriter::writeTransition(const QString &text)
{
    if (formOf(text, true) == Form::Transition)
        writeLine(text);
    else
        writeLine(u"> "_s + withoutLastSign(text, u'<'));
}

void TVLFountainWriter::writeTold(const TVLScreenplayParagraph &paragraph, const QStringList &lines)
{
    const QString directive = TVLFountainDirective::ofParagraph(paragraph);
    const bool isEmpty = lines.size() == 1 && lines.constFirst() == Composer::nothing();
    writeLine(isEmpty ? directive : directive + lines.constFirst());
    for (const QString &line : lines.sliced(1))
        writeLine(line);
}

void TVLFountainWriter::beginBlock()
{
    if (!mText.isEmpty())
        mText += u'\n';
    mText += QString(mKeptBlankLines, u'\n');
    mKeptBlankLines = 0;
}

void TVLFountainWriter::writeLine(QStringView line)
{
    mText += line;
    mText += u'\n';
}

bool TVLFountainWriter::isMistakenForTitle(const QString &line) const
{
    return mText.isEmpty() && tvlBeginsTitlePage(line);
}
