#include "TVLFinalDraftWords_p.h"

#include "TVLWordTable_p.h"

#include <algorithm>

namespace {

using ScriptKind = TVLScreenplayKind;
using ScriptRun = TVLScreenplayRun;

constexpr QStringView SectionWord = u"Outline ";
constexpr QStringView SynopsisWord = u"Outline Body";

constexpr TVLWord<int> FinalDraftAlignments[] = {
    {Qt::AlignLeft, u"Left"},
    {Qt::AlignRight, u"Right"},
    {Qt::AlignHCenter, u"Center"},
    {Qt::AlignJustify, u"Full"},
};

constexpr TVLWord<quint8> StyleWords[] = {
    {ScriptRun::Bold, u"Bold"},
    {ScriptRun::Italic, u"Italic"},
    {ScriptRun::Underline, u"Underline"},
};

constexpr TVLWord<quint8> NoteNames[] = {
    {ScriptRun::Note, u"Annotation"},
    {ScriptRun::Footnote, u"Footnote"},
    {ScriptRun::Boneyard, u"Boneyard"},
};

} // namespace

QString tvlFinalDraftType(const TVLScreenplayParagraph &paragraph)
{
    switch (paragraph.mKind) {
    case ScriptKind::Section:
        return SectionWord.toString() + QString::number(std::max(paragraph.mDepth, 1));
    case ScriptKind::Synopsis:
        return SynopsisWord.toString();
    case ScriptKind::Other:
        return paragraph.mType;
    default:
        return tvlScreenplayWord(paragraph.mKind);
    }
}

void tvlSetFinalDraftType(QStringView type, TVLScreenplayParagraph *paragraph)
{
    if (type == SynopsisWord) {
        paragraph->mKind = ScriptKind::Synopsis;
        return;
    }
    if (type.startsWith(SectionWord)) {
        bool isDepth = false;
        const int depth = type.sliced(SectionWord.size()).toInt(&isDepth);
        if (isDepth && depth > 0) {
            paragraph->mKind = ScriptKind::Section;
            paragraph->mDepth = depth;
            return;
        }
    }
    paragraph->mKind = type.isEmpty() ? ScriptKind::General : tvlScreenplayKind(type);
    if (paragraph->mKind == ScriptKind::Other)
        paragraph->mType = type.toString();
}

QStringView tvlFinalDraftAlignment(int alignment)
{
    return tvlWordOf(FinalDraftAlignments, alignment, QStringView());
}

int tvlAlignmentOfFinalDraft(QStringView word, TVLScreenplayKind kind)
{
    const int alignment = tvlValueOf(FinalDraftAlignments, word, 0);
    const int anyway = kind == ScriptKind::Transition ? Qt::AlignRight : Qt::AlignLeft;
    return alignment == anyway ? 0 : alignment;
}

QString tvlFinalDraftStyle(quint8 styles)
{
    QStringList words;
    for (const TVLWord<quint8> &row : StyleWords) {
        if ((styles & row.value) != 0)
            words += row.word.toString();
    }
    return words.join(u'+');
}

quint8 tvlStylesOfFinalDraft(QStringView word)
{
    quint8 styles = ScriptRun::Plain;
    const auto parts = word.split(u'+');
    for (const QStringView part : parts)
        styles |= tvlValueOf(StyleWords, part, quint8(ScriptRun::Plain));
    return styles;
}

QStringView tvlFinalDraftNoteName(quint8 styles)
{
    for (const TVLWord<quint8> &row : NoteNames) {
        if ((styles & row.value) != 0)
            return row.word;
    }
    return {};
}

quint8 tvlStyleOfFinalDraftNote(QStringView name)
{
    return tvlValueOf(NoteNames, name, quint8(ScriptRun::Plain));
}
