#include "TVLSearchWords_p.h"

#include "TVLCollectionMetaData.h"
#include "TVLTextMatcher.h"

#include <QRegExp>

using namespace Qt::StringLiterals;

namespace {

QStringList splitAtBlanks(const QString &text)
{
    static const QRegExp whiteSpace(u"\\s"_s);
    return whiteSpace.splitString(text, Qt::SkipEmptyParts);
}

/** Words with commas between them may have blanks inside. */
QStringList splitIntoWords(const QString &text)
{
    static const QString comma = u", "_s;
    return text.contains(comma) ? text.split(comma, Qt::SkipEmptyParts) : splitAtBlanks(text);
}

TVLSearchWords wordsByOperator(const TVLCollectionMetaData &collection)
{
    const QString &text = collection.mSearchText;
    switch (collection.mSearchOperator) {
    case TVL::ExactOperator:
        return {{text}, TVLTextMatcher::ExactText};
    case TVL::AllOperator:
        return {splitIntoWords(text), TVLTextMatcher::EveryWord};
    case TVL::AnyOperator:
        return {splitIntoWords(text), 0};
    case TVL::WholeWordOperator:
        return {splitAtBlanks(text), TVLTextMatcher::WholeWord};
    case TVL::RegExpOperator:
        return {{text}, TVLTextMatcher::RegularExpression};
    }
    return {};
}

} // namespace

TVLSearchWords tvlSearchWords(const TVLCollectionMetaData &collection)
{
    TVLSearchWords words = wordsByOperator(collection);
    if (collection.mCaseSensitivity == Qt::CaseSensitive)
        words.flags |= TVLTextMatcher::CaseSensitive;
    return words;
}

int tvlTitleFlags(int flags)
{
    return (flags & TVLTextMatcher::CaseSensitive) | TVLTextMatcher::WholeWord;
}

const QMap<int, QString> &tvlTitleTables()
{
    static const QMap<int, QString> tables = {
        {TVL::KeywordsProperty, u"ProjectKeywords"_s},
        {TVL::LabelProperty, u"ProjectLabels"_s},
        {TVL::StatusProperty, u"ProjectStatusItems"_s},
    };
    return tables;
}
