#include "TVLFountainSyntax_p.h"

#include <algorithm>

namespace {

using Form = TVLFountainForm;

constexpr QStringView HeadingBeginnings[] = {
    u"INT", u"EXT", u"EST", u"I/E", u"INT/EXT", u"INT./EXT", u"EXT/INT", u"EXT./INT",
};

constexpr QStringView TitleKeys[] = {
    u"Title",  u"Credit", u"Author",   u"Authors",      u"Source",    u"Draft date",
    u"Date",   u"Draft",  u"Contact",  u"Contact info", u"Copyright", u"Notes",
    u"Format", u"Font",   u"Revision", u"Language",     u"Subtitle",  u"Written by",
};

bool isEmphasisMark(QChar ch)
{
    return ch == u'*' || ch == u'_';
}

QStringView withoutEmphasisMarks(QStringView line)
{
    while (!line.isEmpty() && isEmphasisMark(line.front()))
        line = line.sliced(1);
    return line;
}

bool isPageBreak(QStringView line)
{
    constexpr qsizetype Shortest = 3;
    line = tvlFountainTrimmedEnd(line);
    return line.size() >= Shortest
        && std::all_of(line.begin(), line.end(), [](QChar ch) { return ch == u'='; });
}

bool hasCapitalsOnly(QStringView text)
{
    bool hasCapital = false;
    for (const QChar ch : text) {
        if (ch.isLower())
            return false;
        hasCapital = hasCapital || ch.isUpper();
    }
    return hasCapital;
}

/** A name in capitals; what stands in parentheses behind it may be in any letters. */
bool isCharacter(QStringView visible)
{
    const qsizetype open = visible.indexOf(u'(');
    if (open < 0)
        return hasCapitalsOnly(visible);
    if (!hasCapitalsOnly(visible.first(open)))
        return false;
    bool isOpen = false;
    for (const QChar ch : visible.sliced(open)) {
        if (ch == u'(')
            isOpen = true;
        else if (ch == u')')
            isOpen = false;
        else if (!isOpen && ch.isLower())
            return false;
    }
    return !isOpen;
}

/** A blank behind the colon makes it something else. */
bool isTransition(QStringView visible)
{
    return visible.endsWith(u"TO:") && hasCapitalsOnly(visible);
}

bool isSignOfSceneNumber(QChar ch)
{
    return ch.isLetterOrNumber() || ch == u'-' || ch == u'.';
}

/** What a first character says by itself; Action for one that says nothing. */
Form formByMark(QStringView line, QStringView visible)
{
    switch (visible.front().unicode()) {
    case u'!':
        return Form::ForcedAction;
    case u'@':
        return Form::ForcedCharacter;
    case u'~':
        return Form::Lyrics;
    case u'#':
        return Form::Section;
    case u'=':
        return isPageBreak(visible) ? Form::PageBreak : Form::Synopsis;
    case u'.':
        return tvlCanBeForcedHeading(visible.sliced(1)) ? Form::ForcedSceneHeading : Form::Action;
    case u'>': {
        const QStringView end = tvlFountainTrimmedEnd(line);
        const bool isClosed = end.size() > 1 && end.endsWith(u'<') && !end.endsWith(u"\\<");
        return isClosed ? Form::Centered : Form::ForcedTransition;
    }
    default:
        return Form::Action;
    }
}

} // namespace

bool tvlIsFountainEscapable(QChar ch)
{
    return QStringView(u"*_\\[]/:(~^#<& \t").contains(ch);
}

bool tvlIsFountainBlankLine(QStringView line)
{
    return std::all_of(line.begin(), line.end(), tvlIsFountainBlank);
}

bool tvlIsKeptBlankLine(QStringView line)
{
    constexpr qsizetype Fewest = 2;
    return tvlIsFountainBlankLine(line) && line.count(u' ') >= Fewest;
}

QStringView tvlFountainTrimmedStart(QStringView text)
{
    while (!text.isEmpty() && tvlIsFountainBlank(text.front()))
        text = text.sliced(1);
    return text;
}

QStringView tvlFountainTrimmedEnd(QStringView text)
{
    qsizetype end = text.size();
    while (end > 0 && tvlIsFountainBlank(text.at(end - 1)))
        --end;
    qsizetype backslashes = 0;
    while (backslashes < end && text.at(end - 1 - backslashes) == u'\\')
        ++backslashes;
    const bool isKept = backslashes % 2 == 1 && end < text.size();
    return text.first(isKept ? end + 1 : end);
}

QStringView tvlFountainTrimmed(QStringView text)
{
    return tvlFountainTrimmedEnd(tvlFountainTrimmedStart(text));
}

TVLFountainForm tvlFountainForm(QStringView line, QStringView visible, bool nextIsBlank)
{
    if (visible.isEmpty())
        return Form::Action;
    const Form byMark = formByMark(line, visible);
    if (byMark != Form::Action)
        return byMark;
    if (tvlBeginsAsHeading(visible))
        return nextIsBlank ? Form::SceneHeading : Form::Action;
    if (nextIsBlank)
        return isTransition(visible) ? Form::Transition : Form::Action;
    return isCharacter(visible) ? Form::Character : Form::Action;
}

bool tvlBeginsAsHeading(QStringView line)
{
    line = withoutEmphasisMarks(line);
    return std::any_of(
        std::begin(HeadingBeginnings), std::end(HeadingBeginnings), [line](QStringView beginning) {
            return line.size() > beginning.size() && line.startsWith(beginning, Qt::CaseInsensitive)
                && (line.at(beginning.size()) == u'.'
                    || tvlIsFountainBlank(line.at(beginning.size())));
        });
}

bool tvlCanBeForcedHeading(QStringView line)
{
    line = withoutEmphasisMarks(line);
    return !line.isEmpty()
        && (line.front().isLetterOrNumber()
            || (line.size() > 1 && line.front().isHighSurrogate()
                && QChar::isLetterOrNumber(QChar::surrogateToUcs4(line.front(), line.at(1)))));
}

bool tvlIsParenthetical(QStringView line, QStringView visible)
{
    return line.startsWith(u'(') && tvlFountainTrimmedEnd(visible).endsWith(u')');
}

qsizetype tvlSceneNumberLength(QStringView heading)
{
    if (!heading.endsWith(u'#'))
        return 0;
    qsizetype start = heading.size() - 1;
    while (start > 0 && isSignOfSceneNumber(heading.at(start - 1)))
        --start;
    const bool isNumber = start > 0 && heading.at(start - 1) == u'#' && start < heading.size() - 1
        && !(start > 1 && heading.at(start - 2) == u'\\');
    return isNumber ? heading.size() - start + 1 : 0;
}

bool tvlIsSceneNumber(QStringView number)
{
    return !number.isEmpty() && std::all_of(number.begin(), number.end(), isSignOfSceneNumber);
}

bool tvlIsTitleEntry(QStringView line)
{
    const qsizetype colon = line.indexOf(u':');
    return colon > 0 && !tvlIsFountainBlank(line.front())
        && std::none_of(line.begin(), line.begin() + colon,
                        [](QChar ch) { return QStringView(u"*_\\[]/").contains(ch); });
}

bool tvlBeginsTitlePage(QStringView line)
{
    if (!tvlIsTitleEntry(line))
        return false;
    const QStringView key = tvlFountainTrimmed(line.first(line.indexOf(u':')));
    return std::any_of(std::begin(TitleKeys), std::end(TitleKeys), [key](QStringView known) {
        return known.compare(key, Qt::CaseInsensitive) == 0;
    });
}
