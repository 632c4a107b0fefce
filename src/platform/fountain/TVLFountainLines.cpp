#include "TVLFountainLines_p.h"

#include "TVLFountainSyntax_p.h"

#include <algorithm>
#include <functional>

namespace {

constexpr qsizetype Nowhere = -1;

/** Hands out the stretches of a line outside of marks; a function that returns false ends it. */
void visitVisible(QStringView text,
                  const std::function<bool(qsizetype start, qsizetype end)> &visit)
{
    TVLFountainMarks marks(text);
    qsizetype start = 0;
    qsizetype i = 0;
    while (i < text.size()) {
        if (text.at(i) == u'\\' && i + 1 < text.size() && tvlIsFountainEscapable(text.at(i + 1))) {
            i += 2;
            continue;
        }
        const qsizetype end = marks.endOfMarkAt(i);
        if (end == Nowhere) {
            ++i;
            continue;
        }
        if (!visit(start, i))
            return;
        i = end;
        start = end;
    }
    visit(start, text.size());
}

} // namespace

qsizetype TVLFountainMarks::find(QStringView sign, qsizetype from, qsizetype *known) const
{
    if (*known == Unknown || (*known != Nowhere && *known < from))
        *known = mText.indexOf(sign, from);
    return *known;
}

qsizetype TVLFountainMarks::findBlankLine(qsizetype from)
{
    if (mBlankLine != Unknown && (mBlankLine == Nowhere || mBlankLine >= from))
        return mBlankLine;
    qsizetype end = mText.indexOf(u'\n', from);
    while (end >= 0) {
        const qsizetype next = mText.indexOf(u'\n', end + 1);
        const QStringView line = mText.sliced(end + 1, (next < 0 ? mText.size() : next) - end - 1);
        if (tvlIsFountainBlankLine(line) && !tvlIsKeptBlankLine(line))
            break;
        end = next;
    }
    mBlankLine = end;
    return mBlankLine;
}

qsizetype TVLFountainMarks::endOfMarkAt(qsizetype place)
{
    const QChar ch = mText.at(place);
    if ((ch != u'/' && ch != u'[') || place + 1 >= mText.size()
        || mText.at(place + 1) != (ch == u'/' ? u'*' : u'['))
        return Nowhere;
    if (ch == u'/') {
        const qsizetype end = find(u"*/", place + SignLength, &mBoneyardEnd);
        return end < 0 ? Nowhere : end + SignLength;
    }
    const qsizetype end = find(u"]]", place + SignLength, &mNoteEnd);
    if (end < 0)
        return Nowhere;
    const qsizetype blankLine = findBlankLine(place);
    return blankLine != Nowhere && blankLine < end ? Nowhere : end + SignLength;
}

QString TVLFountainLine::visible() const
{
    QString visible;
    visitVisible(mText, [&](qsizetype start, qsizetype end) {
        visible += mText.sliced(start, end - start);
        return true;
    });
    return visible;
}

qsizetype TVLFountainLine::visibleStart() const
{
    qsizetype place = mText.size();
    visitVisible(mText, [&](qsizetype start, qsizetype end) {
        const QStringView stretch = mText.sliced(start, end - start);
        if (tvlIsFountainBlankLine(stretch))
            return true;
        place = end - tvlFountainTrimmedStart(stretch).size();
        return false;
    });
    return place;
}

bool TVLFountainLines::next(TVLFountainLine *line)
{
    if (mPlace >= mText.size())
        return false;
    const qsizetype start = mPlace;
    *line = TVLFountainLine();
    qsizetype i = start;
    while (i < mText.size()) {
        const QChar ch = mText.at(i);
        if (ch == u'\n')
            break;
        if (ch == u'/' || ch == u'[') {
            const qsizetype end = mMarks.endOfMarkAt(i);
            if (end != Nowhere) {
                line->mHasMarks = true;
                if (mMarks.isNoteAt(i)) {
                    line->mHasNotes = true;
                    line->mHasText = true;
                }
                i = end;
                continue;
            }
        }
        const bool isEscape =
            ch == u'\\' && i + 1 < mText.size() && tvlIsFountainEscapable(mText.at(i + 1));
        line->mHasText = line->mHasText || !tvlIsFountainBlank(ch);
        i += isEscape ? 2 : 1;
    }
    line->mText = mText.sliced(start, i - start);
    mPlace = i + 1;
    return true;
}
