#include "TVLRtfParser_p.h"

#include "TVLTextFormat.h"

#include <QTextListFormat>

namespace {

struct NumberingRow
{
    int number;
    int style;
};

constexpr NumberingRow NumberingRows[] = {
    {0, QTextListFormat::ListDecimal},    {1, QTextListFormat::ListUpperRoman},
    {2, QTextListFormat::ListLowerRoman}, {3, QTextListFormat::ListUpperAlpha},
    {4, QTextListFormat::ListLowerAlpha}, {22, QTextListFormat::ListDecimal},
    {23, QTextListFormat::ListDisc},      {255, QTextListFormat::ListStyleUndefined},
};

int styleOfNumbering(int number)
{
    for (const NumberingRow &row : NumberingRows) {
        if (row.number == number)
            return row.style;
    }
    return QTextListFormat::ListDecimal;
}

/** The style of a bullet by its character, which may come from a font of symbols. */
int styleOfBullet(QStringView text)
{
    if (text.contains(u'o') || text.contains(QChar(0x25e6)) || text.contains(QChar(0x25cb)))
        return QTextListFormat::ListCircle;
    if (text.contains(QChar(0x25a0)) || text.contains(QChar(0x25aa)) || text.contains(QChar(0xa7))
        || text.contains(QChar(0xf0a7)))
        return QTextListFormat::ListSquare;
    return QTextListFormat::ListDisc;
}

bool isBullet(int style)
{
    return style == QTextListFormat::ListDisc || style == QTextListFormat::ListCircle
        || style == QTextListFormat::ListSquare;
}

/** What stands before and behind a level's number in its text: a length, then the text, in which
 * a character below 9 is the number of the level with that place. */
QPair<QString, QString> textAroundNumber(const QString &levelText)
{
    QString text = levelText.mid(1);
    if (text.endsWith(u';'))
        text.chop(1);
    const auto isNumber = [](QChar c) { return c.unicode() < MaximumListLevels; };
    const auto first = std::find_if(text.cbegin(), text.cend(), isNumber);
    if (first == text.cend())
        return {};
    const auto last = std::find_if(text.crbegin(), text.crend(), isNumber).base();
    return {QString(text.cbegin(), first - text.cbegin()), QString(last, text.cend() - last)};
}

int boundedStart(int start)
{
    constexpr int MaximumStart = 32767;
    return qBound(0, start, MaximumStart);
}

QTextListFormat listFormat(int style, int indent, int start, const QString &before,
                           const QString &after)
{
    QTextListFormat format;
    format.setStyle(static_cast<QTextListFormat::Style>(style));
    format.setIndent(indent);
    if (isBullet(style))
        return format;
    if (!before.isEmpty())
        format.setNumberPrefix(before);
    if (after != u".")
        format.setNumberSuffix(after);
    if (start != 1)
        format.setProperty(TVLTextFormat::ListStart, start);
    return format;
}

} // namespace

void TVLRtfParser::applyWord(TVLRtfListAction action, int argument, const TVLRtfToken &token)
{
    switch (action) {
    case TVLRtfListAction::ListId:
        if (mGroup.mDestination == Destination::ListOverride)
            mOverride.mId = token.mParameter;
        else
            mList.mId = token.mParameter;
        break;
    case TVLRtfListAction::ListRestart:
        mOverride.mRestarts = true;
        break;
    case TVLRtfListAction::OverrideLevel:
        ++mOverride.mLevel;
        break;
    case TVLRtfListAction::LevelStart:
        if (mGroup.mDestination != Destination::ListOverride)
            mListLevel.mStart = boundedStart(token.mParameter);
        else if (mOverride.mLevel >= 0 && mOverride.mLevel < MaximumListLevels)
            mOverride.mStarts.insert(mOverride.mLevel, boundedStart(token.mParameter));
        break;
    case TVLRtfListAction::LevelNumbering:
        mListLevel.mStyle = styleOfNumbering(token.mParameter);
        break;
    case TVLRtfListAction::LevelIndent:
        mListLevel.mIndent = qBound(0, token.mParameter, 1000);
        mListLevel.mIsExact = true;
        break;
    case TVLRtfListAction::OldListLevel:
        mOldList.mLevel =
            qBound(0, (argument < 0 ? token.mParameter : 1) - 1, MaximumListLevels - 1);
        break;
    case TVLRtfListAction::OldListStart:
        mOldList.mStart = boundedStart(token.mParameter);
        break;
    case TVLRtfListAction::OldListGoesOn:
        mOldList.mGoesOn = true;
        break;
    case TVLRtfListAction::OldListStyle:
        mOldList.mStyle = argument;
        break;
    }
}

void TVLRtfParser::finishListLevel()
{
    if (mListLevel.mStyle == QTextListFormat::ListDisc)
        mListLevel.mStyle =
            styleOfBullet(QStringView(mListLevel.mText).mid(mListLevel.mText.isEmpty() ? 0 : 1));
    if (mList.mLevels.size() < MaximumListLevels)
        mList.mLevels.push_back(mListLevel);
}

void TVLRtfParser::finishOldList()
{
    if (mOldList.mGoesOn)
        mGroup.mParagraph.mOldList = TVLRtfParagraphState::WithinOldList;
    if (mOldList.mGoesOn || mOldList.mStyle == 0)
        return;
    if (mOldList.mStyle == QTextListFormat::ListDisc)
        mOldList.mStyle = styleOfBullet(mOldList.mBefore);
    if (mOldLists.empty() || mOldLists.back() != mOldList)
        mOldLists.push_back(mOldList);
    mGroup.mParagraph.mOldList = int(mOldLists.size()) - 1;
}

const TVLRtfParser::ListLevel *TVLRtfParser::listLevel(int number, int level) const
{
    const auto known = mOverrides.constFind(number);
    if (known == mOverrides.cend())
        return nullptr;
    const auto list = mLists.constFind(known->mId);
    if (list == mLists.cend() || list->mLevels.empty())
        return nullptr;
    return &list->mLevels[qMin(size_t(level), list->mLevels.size() - 1)];
}

int TVLRtfParser::paragraphList(int *left, int *first)
{
    const TVLRtfParagraphState &paragraph = mGroup.mParagraph;
    const bool isOld = paragraph.mOldList != TVLRtfParagraphState::NoOldList;
    // A number that nothing is known of doesn't outweigh a description; and 0 may mean no list.
    if (listLevel(paragraph.mList, paragraph.mListLevel) || (paragraph.mList > 0 && !isOld))
        return newStyleList(left, first);
    if (paragraph.mOldList >= 0)
        return oldStyleList(left, first);
    if (!isOld) {
        for (LastOldList &last : mLastOldLists)
            last.mIsOpen = false;
    }
    return -1;
}

/** What a paragraph's list counts with: others of the same list, unless it counts for itself. */
qint64 TVLRtfParser::counterOfList(int number) const
{
    constexpr qint64 OfItself = qint64(1) << 32;
    const auto known = mOverrides.constFind(number);
    return known == mOverrides.cend() || known->mRestarts ? OfItself + number : known->mId;
}

int TVLRtfParser::newStyleList(int *left, int *first)
{
    const TVLRtfParagraphState &paragraph = mGroup.mParagraph;
    const qint64 counter = counterOfList(paragraph.mList);
    const int level = paragraph.mListLevel;
    // A list inside an item ends with the item; the next one there counts from the start.
    for (int deeper = level + 1; deeper < MaximumListLevels; ++deeper)
        mOpenLists.remove({counter, deeper});
    const ListLevel *properties = listLevel(paragraph.mList, level);
    if (properties && properties->mStyle == QTextListFormat::ListStyleUndefined)
        return -1;
    *left = properties ? properties->mLeft : paragraph.mLeftIndent.value_or(0);
    *first = properties ? properties->mFirst : paragraph.mFirstIndent.value_or(0);
    // What hangs over in front is the marker, wherever the program wants it; the text behind it
    // starts where the other lines do.
    if (properties && !properties->mIsExact)
        *first = qMin(paragraph.mFirstIndent.value_or(*first), 0);
    const auto open = mOpenLists.constFind({counter, level});
    if (open != mOpenLists.cend())
        return *open;
    return *mOpenLists.insert({counter, level}, mBuilder.addList(newStyleFormat(properties)));
}

QTextListFormat TVLRtfParser::newStyleFormat(const ListLevel *properties) const
{
    const int level = mGroup.mParagraph.mListLevel;
    if (!properties)
        return listFormat(QTextListFormat::ListDisc, level + 1, 1, {}, {});
    const auto [before, after] = textAroundNumber(properties->mText);
    const ListOverride &list = *mOverrides.constFind(mGroup.mParagraph.mList);
    return listFormat(properties->mStyle, properties->mIndent > 0 ? properties->mIndent : level + 1,
                      list.mStarts.value(level, properties->mStart), before, after);
}

bool TVLRtfParser::LastOldList::goesOnWith(const OldList &properties) const
{
    if (mList < 0 || !mProperties.looksLike(properties))
        return false;
    // Behind text that isn't in a list, only the number tells.
    return properties.mStart == mProperties.mStart + mItems
        || (mIsOpen && properties.mStart == mLastStart);
}

int TVLRtfParser::oldStyleList(int *left, int *first)
{
    const TVLRtfParagraphState &paragraph = mGroup.mParagraph;
    *left = paragraph.mLeftIndent.value_or(0);
    *first = paragraph.mFirstIndent.value_or(0);
    const OldList &list = mOldLists[size_t(paragraph.mOldList)];
    LastOldList &last = mLastOldLists[size_t(list.mLevel)];
    if (!last.goesOnWith(list))
        last = {list,
                mBuilder.addList(listFormat(list.mStyle, list.mLevel + 1, list.mStart, list.mBefore,
                                            list.mAfter))};
    ++last.mItems;
    last.mLastStart = list.mStart;
    last.mIsOpen = true;
    // A list inside an item ends with the item.
    std::fill(mLastOldLists.begin() + list.mLevel + 1, mLastOldLists.end(), LastOldList());
    return last.mList;
}
