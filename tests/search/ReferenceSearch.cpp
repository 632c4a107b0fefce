#include "ReferenceSearch.h"

#include "ReferenceMatch.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QStringList Vocabulary = {
    u"art"_s,         u"cart"_s, u"Art"_s,           u"artist"_s,        u"red"_s,
    u"Tired"_s,       u"it's"_s, u"it\u2019s"_s,     u"\"so\""_s,        u"\u201cso\u201d"_s,
    u"a.c"_s,         u"abc"_s,  u"\u00e9t\u00e9"_s, u"\u00c9T\u00c9"_s, u"2"_s,
    u"b2b"_s,         u"(x)"_s,  u"dark blue"_s,     u"\u6f22\u5b57"_s,  u"\U0001d11e"_s,
    u"stra\u00dfe"_s,
};

const QStringList Separators = {u" "_s, u", "_s, u","_s, u"\n"_s, u"-"_s, u""_s, u"\u00a0"_s};

const QStringList Expressions = {
    u"a.c"_s,        u"^art"_s, u"art$"_s, u"\\bart\\b"_s, u"[a-c]+2"_s,
    u"(red|it's)"_s, u"("_s,    u"\\d"_s,  u"t.*d"_s,      u""_s};

constexpr int CaseSensitive = 2;
constexpr int WholeWord = 4 | 8;
constexpr int Exact = 16;
constexpr int EveryWord = 32;
constexpr int Expression = 64;

QStringList splitAtBlanks(const QString &text)
{
    QStringList words;
    QString word;
    for (const QChar ch : text + u' ') {
        if (!ch.isSpace()) {
            word += ch;
        } else if (!word.isEmpty()) {
            words.append(word);
            word.clear();
        }
    }
    return words;
}

QStringList splitAtCommasOrBlanks(const QString &text)
{
    return text.contains(u", "_s) ? text.split(u", "_s, Qt::SkipEmptyParts) : splitAtBlanks(text);
}

} // namespace

ReferenceSearch::ReferenceSearch(const TVLCollectionMetaData &search)
    : mProperty(search.mSearchProperty)
{
    const QString &text = search.mSearchText;
    switch (int(search.mSearchOperator)) {
    case 0:
        mWords = {text};
        mFlags = Exact;
        break;
    case 1:
        mWords = splitAtCommasOrBlanks(text);
        mFlags = EveryWord;
        break;
    case 2:
        mWords = splitAtCommasOrBlanks(text);
        break;
    case 3:
        mWords = splitAtBlanks(text);
        mFlags = WholeWord;
        break;
    case 4:
        mWords = {text};
        mFlags = Expression;
        break;
    }
    if (search.mCaseSensitivity == Qt::CaseSensitive)
        mFlags |= CaseSensitive;
}

bool ReferenceSearch::isSearched(int property) const
{
    return mProperty == 0 || mProperty == property;
}

bool ReferenceSearch::finds(const SearchedItem &item) const
{
    return !mWords.isEmpty() && (findsText(item) || findsTitle(item));
}

bool ReferenceSearch::findsText(const SearchedItem &item) const
{
    for (const int property : {1, 2, 3, 4, 8, 9}) {
        if (isSearched(property) && referenceMatch(item.texts.value(property), mFlags, mWords))
            return true;
    }
    return false;
}

bool ReferenceSearch::findsTitle(const SearchedItem &item) const
{
    const auto matches = [&](const QString &word) { return findsTitle(item, word); };
    return (mFlags & EveryWord) ? std::all_of(mWords.begin(), mWords.end(), matches)
                                : std::any_of(mWords.begin(), mWords.end(), matches);
}

bool ReferenceSearch::findsTitle(const SearchedItem &item, const QString &word) const
{
    const int flags = (mFlags & CaseSensitive) | WholeWord;
    for (const int property : {5, 6, 7}) {
        const QStringList titles = item.titles.value(property);
        if (isSearched(property)
            && std::any_of(titles.begin(), titles.end(), [&](const QString &title) {
                   return referenceMatch(title, flags, {word});
               }))
            return true;
    }
    return false;
}

QString randomSearchedText(QRandomGenerator *random, int mostWords)
{
    const auto anyOf = [random](const QStringList &list) {
        return list.at(random->bounded(int(list.size())));
    };
    QString text;
    const int words = random->bounded(mostWords + 1);
    for (int i = 0; i < words; ++i) {
        text += anyOf(Vocabulary);
        text += anyOf(Separators);
    }
    return text;
}

TVLCollectionMetaData randomSearch(QRandomGenerator *random)
{
    TVLCollectionMetaData search;
    search.mType = TVL::SavedSearchCollection;
    search.mSearchOperator = TVL::SearchOperator(random->bounded(6));
    search.mSearchProperty = TVL::DocumentProperty(random->bounded(10));
    search.mCaseSensitivity = random->bounded(2) ? Qt::CaseSensitive : Qt::CaseInsensitive;
    search.mSearchText = search.mSearchOperator == TVL::RegExpOperator
        ? Expressions.at(random->bounded(int(Expressions.size())))
        : randomSearchedText(random, 3);
    if (random->bounded(2))
        search.mSearchText = search.mSearchText.trimmed();
    return search;
}
