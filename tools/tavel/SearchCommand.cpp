#include "Command.h"
#include "ItemTexts.h"
#include "ProjectOpener.h"

#include "TVLCollectionMetaData.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLPropertyWords_p.h"
#include "TVLSearchIndex.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegExp>

#include <algorithm>
#include <iterator>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr TVLWord<TVL::SearchOperator> Operators[] = {
    {TVL::ExactOperator, u"exact"},    {TVL::AllOperator, u"all"},       {TVL::AnyOperator, u"any"},
    {TVL::WholeWordOperator, u"word"}, {TVL::RegExpOperator, u"regexp"},
};

/** What binders have no word for, as a saved search can't ask for it. */
constexpr TVLWord<TVL::DocumentProperty> FurtherProperties[] = {
    {TVL::CommentsProperty, u"Comments"},
};

template <typename Value, std::size_t Size>
QStringList wordsOf(const TVLWord<Value> (&table)[Size])
{
    QStringList words;
    for (const TVLWord<Value> &row : table)
        words.append(row.word.toString());
    return words;
}

QStringList propertyWords()
{
    return wordsOf(TVLPropertyWords) + wordsOf(FurtherProperties);
}

/** Takes the value of a word, in any case. */
template <typename Value, std::size_t Size>
bool takeWord(const TVLWord<Value> (&table)[Size], const QString &word, Value *value)
{
    for (const TVLWord<Value> &row : table) {
        if (row.word.compare(word, Qt::CaseInsensitive) == 0) {
            *value = row.value;
            return true;
        }
    }
    return false;
}

QString wordError(const QString &what, const QString &word, const QStringList &words)
{
    return u"unknown %1 '%2'; it is one of %3"_s.arg(what, word, words.join(u", "_s));
}

QCommandLineOption operatorOption()
{
    return QCommandLineOption(
        u"operator"_s,
        u"How to take TEXT: as it stands (exact, the default), as words of which all or any are to "
        "be found, as whole words of which any is (word), or as a regular expression (regexp)."_s,
        u"OPERATOR"_s, u"exact"_s);
}

QCommandLineOption propertyOption()
{
    return QCommandLineOption(
        u"in"_s,
        u"Where to look: one of %1. Without it, in all."_s.arg(propertyWords().join(u", "_s)),
        u"PROPERTY"_s, u"All"_s);
}

QCommandLineOption caseOption()
{
    return QCommandLineOption(u"case"_s, u"Tells capital letters from small ones."_s);
}

/**
 * What is wrong with a text as what to look for. A search by a broken expression finds nothing and
 * says nothing, so that it is told here.
 */
QString textError(const TVLCollectionMetaData &search)
{
    const QString &text = search.mSearchText;
    if (text.isEmpty())
        return u"the text to look for is empty"_s;
    if (search.mSearchOperator != TVL::RegExpOperator)
        return {};
    const QRegExp expression(text, search.mCaseSensitivity, QRegExp::RegExp2);
    return expression.isValid()
        ? QString()
        : u"'%1' is no regular expression: %2"_s.arg(text, expression.errorString());
}

/** Takes what is to be looked for from a command line; empty, or what is wrong with that. */
QString takeSearch(const QCommandLineParser &parser, TVLCollectionMetaData *search)
{
    search->mType = TVL::SavedSearchCollection;
    search->mSearchText = parser.positionalArguments().last();
    search->mCaseSensitivity = parser.isSet(caseOption()) ? Qt::CaseSensitive : Qt::CaseInsensitive;
    const QString searchOperator = parser.value(operatorOption());
    TVL::SearchOperator operatorNumber = TVL::ExactOperator;
    if (!takeWord(Operators, searchOperator, &operatorNumber))
        return wordError(u"operator"_s, searchOperator, wordsOf(Operators));
    search->mSearchOperator = operatorNumber;
    const QString property = parser.value(propertyOption());
    if (!takeWord(TVLPropertyWords, property, &search->mSearchProperty)
        && !takeWord(FurtherProperties, property, &search->mSearchProperty))
        return wordError(u"property"_s, property, propertyWords());
    return textError(*search);
}

/** An item that a search has found, and where. Its texts aren't kept: many items may be found. */
struct FoundItem
{
    const TVLProjectNode *node;
    qsizetype hits;
    QString property; ///< Of the first hit.
    QString excerpt; ///< The first hit in its words.
};

QString propertyWord(TVL::DocumentProperty property)
{
    const auto wordIn = [property](const auto &table) {
        const auto row = std::find_if(std::begin(table), std::end(table),
                                      [=](const auto &known) { return known.value == property; });
        return row == std::end(table) ? QString() : row->word.toString();
    };
    const QString word = wordIn(TVLPropertyWords);
    return word.isEmpty() ? wordIn(FurtherProperties) : word;
}

/** A place to cut a text at, at or before @p position if @p step is negative, else at or behind it:
 * the nearest end of a word within a few characters. */
qsizetype placeToCut(const QString &text, qsizetype position, int step)
{
    constexpr int LongestWord = 20;
    const auto isInWord = [&text](qsizetype place) {
        return place > 0 && place < text.size() && !text.at(place - 1).isSpace()
            && !text.at(place).isSpace();
    };
    qsizetype place = std::clamp<qsizetype>(position, 0, text.size());
    for (int i = 0; i < LongestWord && isInWord(place); ++i)
        place += step;
    // Never between the halves of a character.
    return place > 0 && place < text.size() && text.at(place).isLowSurrogate() ? place - 1 : place;
}

/** A hit with the words around it. */
QString excerptOf(const TVLSearchHit &hit)
{
    constexpr qsizetype Around = 30;
    const QString ellipsis = u"…"_s;
    const qsizetype begin = placeToCut(hit.text, hit.position - Around, -1);
    const qsizetype end = placeToCut(hit.text, hit.position + hit.length + Around, 1);
    return (begin > 0 ? ellipsis : QString()) + hit.text.mid(begin, end - begin).simplified()
        + (end < hit.text.size() ? ellipsis : QString());
}

QString matchLine(const FoundItem &item)
{
    const QString line = QString::number(item.node->mId) + u"  "_s + shownTitle(item.node);
    if (item.hits == 0)
        return oneLine(line);
    const QString count = item.hits == 1 ? u"1 hit"_s : u"%1 hits"_s.arg(item.hits);
    return oneLine(u"%1  (%2; %3: %4)"_s.arg(line, count, item.property, item.excerpt));
}

QJsonObject itemToJson(const FoundItem &item)
{
    QJsonValue first;
    if (item.hits > 0)
        first = QJsonObject{{u"property"_s, item.property}, {u"text"_s, item.excerpt}};
    return {{u"id"_s, idOrNull(item.node->mId)},
            {u"uuid"_s, toJson(item.node->mUuid)},
            {u"title"_s, item.node->mTitle},
            {u"hits"_s, item.hits},
            {u"first"_s, first}};
}

void writeJson(const QList<FoundItem> &found, Console *console)
{
    QJsonArray array;
    for (const FoundItem &item : found)
        array.append(itemToJson(item));
    console->write(QJsonDocument(array).toJson());
}

/** The items that a search finds, in the order of the binder. */
QList<FoundItem> find(const TVLProjectModel &model, const TVLCollectionMetaData &search)
{
    QList<FoundItem> found;
    const QModelIndexList indexes = model.sortIndexesHash(model.collectionIndexes(search, {}));
    for (const QModelIndex &index : indexes) {
        const TVLProjectNode *node = model.projectNode(index);
        const QList<TVLSearchHit> hits = model.searchIndex()->hits(search, node->mId);
        const TVLSearchHit first = hits.value(0);
        found.append({node, hits.size(), propertyWord(first.property), excerptOf(first)});
    }
    return found;
}

ExitStatus runSearch(const QCommandLineParser &parser, Console *console)
{
    TVLCollectionMetaData search;
    QString error = takeSearch(parser, &search);
    if (!error.isEmpty())
        return console->refuse(error);

    const QString path = parser.positionalArguments().constFirst();
    // The search index knows items by their ids.
    if (findBinderFiles(path, &error) && isOfLaterFormat(path))
        return console->fail(
            u"projects of format version 23 can't be searched yet: '%1'"_s.arg(path));
    const std::unique_ptr<TVLProjectModel> model =
        openToRead(path, &error, TVLProjectFolderFormat::ItemsAndSearch);
    if (!model)
        return console->fail(error);

    const QList<FoundItem> found = find(*model, search);
    if (wantsJson(parser)) {
        writeJson(found, console);
        return ExitStatus::Done;
    }
    for (const FoundItem &item : found)
        console->writeLine(matchLine(item));
    return ExitStatus::Done;
}

} // namespace

Command searchCommand()
{
    return {u"search"_s,
            u"Finds items by their titles, texts and what else is known of them."_s,
            {projectArgument(), {u"TEXT"_s, u"What to look for."_s}},
            {operatorOption(), propertyOption(), caseOption(), jsonOption()},
            runSearch};
}
