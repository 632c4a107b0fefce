#include "TVLScriptElementFinder_p.h"

#include "TVLScriptMode.h"
#include "TVLTextFormat.h"
#include "TVLWordTable_p.h"

#include <QCoreApplication>

#include <cmath>

namespace {

using ScriptKind = TVLScreenplayKind;

/** Other names that elements go by. */
constexpr TVLWord<ScriptKind> OtherNames[] = {
    {ScriptKind::SceneHeading, u"Slugline"},
    {ScriptKind::SceneHeading, u"Slug Line"},
    {ScriptKind::SceneHeading, u"Heading"},
    {ScriptKind::Action, u"Description"},
    {ScriptKind::Action, u"Stage Direction"},
    {ScriptKind::Action, u"Stage Directions"},
    {ScriptKind::Character, u"Character Name"},
    {ScriptKind::Character, u"Character Cue"},
    {ScriptKind::Parenthetical, u"Wryly"},
    {ScriptKind::Dialogue, u"Speech"},
    {ScriptKind::Lyrics, u"Lyric"},
};

ScriptKind kindOfOtherName(QStringView name)
{
    for (const TVLWord<ScriptKind> &row : OtherNames) {
        if (row.word.compare(name, Qt::CaseInsensitive) == 0)
            return row.value;
    }
    return ScriptKind::Other;
}

bool isTranslationOf(ScriptKind kind, const QString &name)
{
    const QByteArray word = tvlScreenplayWord(kind).toUtf8();
    return !word.isEmpty()
        && QCoreApplication::translate("TVLScriptMode", word.constData())
               .compare(name, Qt::CaseInsensitive)
        == 0;
}

/** Files hold measures as twentieths of a point. */
bool areMeasuresEqual(double a, double b)
{
    constexpr double Tolerance = 0.06;
    return std::abs(a - b) < Tolerance;
}

Qt::Alignment alignmentOf(const QTextBlockFormat &format)
{
    const Qt::Alignment alignment = format.alignment() & Qt::AlignHorizontal_Mask;
    return alignment == Qt::Alignment() ? Qt::AlignLeft : alignment;
}

bool isLaidOutAlike(const QTextBlockFormat &a, const QTextBlockFormat &b)
{
    return alignmentOf(a) == alignmentOf(b) && areMeasuresEqual(a.leftMargin(), b.leftMargin())
        && areMeasuresEqual(a.rightMargin(), b.rightMargin())
        && areMeasuresEqual(a.textIndent(), b.textIndent())
        && areMeasuresEqual(a.topMargin(), b.topMargin())
        && areMeasuresEqual(a.bottomMargin(), b.bottomMargin());
}

QString firstFamilyOf(const QTextCharFormat &format)
{
    return format.fontFamilies().toStringList().value(0);
}

bool isSetAlike(const QTextCharFormat &a, const QTextCharFormat &b)
{
    return a.fontCapitalization() == b.fontCapitalization()
        && areMeasuresEqual(a.fontPointSize(), b.fontPointSize())
        && firstFamilyOf(a) == firstFamilyOf(b);
}

/** Whether paragraphs that aren't of a script are not laid out like that. */
bool isDistinctive(const QTextBlockFormat &format)
{
    return !isLaidOutAlike(format, QTextBlockFormat());
}

} // namespace

TVLScriptElementFinder::TVLScriptElementFinder(const QList<TVLScriptElement> &elements)
    : mElements(elements.isEmpty() ? TVLScriptMode::factoryDefaults().mElements : elements)
{
    for (int kind = 0; kind < ScreenplayKindCount; ++kind) {
        int &place = mElementOfKind[size_t(kind)];
        place = kind == int(ScriptKind::Other) ? None
                                               : elementNamed(tvlScreenplayWord(ScriptKind(kind)));
        for (int i = 0; i < mElements.size() && place == None; ++i) {
            if (isTranslationOf(ScriptKind(kind), mElements.at(i).name()))
                place = i;
        }
        for (int i = 0; i < mElements.size() && place == None && kind != int(ScriptKind::Other);
             ++i) {
            if (kindOfOtherName(mElements.at(i).name()) == ScriptKind(kind))
                place = i;
        }
    }
}

int TVLScriptElementFinder::elementNamed(QStringView name) const
{
    int found = None;
    for (int i = 0; i < mElements.size(); ++i) {
        if (mElements.at(i).name() == name)
            return i;
        if (found == None && name.compare(mElements.at(i).name(), Qt::CaseInsensitive) == 0)
            found = i;
    }
    return found;
}

int TVLScriptElementFinder::firstOf(std::initializer_list<TVLScreenplayKind> kinds) const
{
    for (const ScriptKind kind : kinds) {
        if (mElementOfKind[size_t(kind)] != None)
            return mElementOfKind[size_t(kind)];
    }
    return 0;
}

TVLScriptElementFinder::Choice TVLScriptElementFinder::elementFor(TVLScreenplayKind kind,
                                                                  QStringView name) const
{
    const int element =
        kind == ScriptKind::Other ? elementNamed(name) : mElementOfKind[size_t(kind)];
    if (element != None)
        return {element, true};
    if (kind == ScriptKind::Lyrics)
        return {firstOf({ScriptKind::Dialogue, ScriptKind::General, ScriptKind::Action}), false};
    return {firstOf({ScriptKind::General, ScriptKind::Action}), false};
}

TVLScreenplayKind TVLScriptElementFinder::kindOf(int element) const
{
    for (int kind = 0; kind < ScreenplayKindCount; ++kind) {
        if (mElementOfKind[size_t(kind)] == element)
            return ScriptKind(kind);
    }
    return ScriptKind::Other;
}

int TVLScriptElementFinder::elementOf(const QTextBlockFormat &block,
                                      const QTextCharFormat &text) const
{
    const QString name = block.stringProperty(TVLTextFormat::ScriptElement);
    for (int i = 0; i < mElements.size() && !name.isEmpty(); ++i) {
        if (mElements.at(i).name() == name)
            return i;
    }
    int laidOutAlike = None;
    for (int i = 0; i < mElements.size(); ++i) {
        if (!isLaidOutAlike(mElements.at(i).blockFormat(), block))
            continue;
        if (isSetAlike(mElements.at(i).charFormat(), text))
            return i;
        if (laidOutAlike == None)
            laidOutAlike = i;
    }
    return isDistinctive(block) ? laidOutAlike : None;
}
