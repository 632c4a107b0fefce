#include "TVLScreenplay_p.h"

#include "TVLWordTable_p.h"

namespace {

using ScriptKind = TVLScreenplayKind;

constexpr TVLWord<ScriptKind> KindWords[] = {
    {ScriptKind::SceneHeading, u"Scene Heading"},
    {ScriptKind::Action, u"Action"},
    {ScriptKind::Character, u"Character"},
    {ScriptKind::Parenthetical, u"Parenthetical"},
    {ScriptKind::Dialogue, u"Dialogue"},
    {ScriptKind::Transition, u"Transition"},
    {ScriptKind::Shot, u"Shot"},
    {ScriptKind::General, u"General"},
    {ScriptKind::Lyrics, u"Lyrics"},
    {ScriptKind::TitlePage, u"Title Page"},
    {ScriptKind::Section, u"Section"},
    {ScriptKind::Synopsis, u"Synopsis"},
};

} // namespace

QString tvlScreenplayWord(TVLScreenplayKind kind)
{
    return tvlWordOf(KindWords, kind, QStringView()).toString();
}

TVLScreenplayKind tvlScreenplayKind(QStringView word)
{
    for (const TVLWord<ScriptKind> &row : KindWords) {
        if (row.word.compare(word, Qt::CaseInsensitive) == 0)
            return row.value;
    }
    return ScriptKind::Other;
}

void TVLScreenplayParagraph::append(QStringView text, quint8 styles, int look)
{
    const quint8 styleOfLineEnd = styles & quint8(~TVLScreenplayRun::Emphasis);
    if (styles == styleOfLineEnd && look == TVLScreenplayRun::NoLook) {
        appendRun(text, styles, look);
        return;
    }
    qsizetype start = 0;
    for (;;) {
        const qsizetype end = text.indexOf(QChar(QChar::LineSeparator), start);
        if (end < 0)
            break;
        appendRun(text.sliced(start, end - start), styles, look);
        appendRun(text.sliced(end, 1), styleOfLineEnd, TVLScreenplayRun::NoLook);
        start = end + 1;
    }
    appendRun(text.sliced(start), styles, look);
}

void TVLScreenplayParagraph::appendRun(QStringView text, quint8 styles, int look)
{
    if (text.isEmpty())
        return;
    const bool isPlain = styles == TVLScreenplayRun::Plain && look == TVLScreenplayRun::NoLook;
    if (mRuns.empty() && !isPlain && !mText.isEmpty())
        mRuns.push_back({int(mText.size())});
    if (!mRuns.empty() || !isPlain) {
        if (!mRuns.empty() && mRuns.back().mStyles == styles && mRuns.back().mLook == look)
            mRuns.back().mLength += int(text.size());
        else
            mRuns.push_back({int(text.size()), styles, look});
    }
    mText += text;
}

bool TVLScreenplayParagraph::isCharacterOrSpeech() const
{
    return mKind == ScriptKind::Character || mKind == ScriptKind::Parenthetical
        || mKind == ScriptKind::Dialogue || mKind == ScriptKind::Lyrics;
}

int TVLScreenplay::placeOf(const TVLScreenplayLook &look)
{
    if (look == TVLScreenplayLook())
        return TVLScreenplayRun::NoLook;
    // A screenplay has few of them, and one follows itself.
    const qsizetype place = mLooks.lastIndexOf(look);
    if (place >= 0)
        return int(place);
    mLooks.append(look);
    return int(mLooks.size()) - 1;
}
