#include "Command.h"
#include "ItemTexts.h"
#include "ProjectOpener.h"

#include "TVLCollectionMetaData.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLPropertyWords.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegExp>

#include <optional>

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
    return u"unknown %1 '%2'; it is one of %3"_qs.arg(what, word, words.join(u", "_qs));
}

QCommandLineOption operatorOption()
{
    return QCommandLineOption(
        u"operator"_qs,
        u"How to take TEXT: as it stands (exact, the default), as words of which all or any are to "
        "be found, as whole words of which any is (word), or as a regular expression (regexp)."_qs,
        u"OPERATOR"_qs, u"exact"_qs);
}

QCommandLineOption propertyOption()
{
    return QCommandLineOption(
        u"in"_qs,
        u"Where to look: one of %1. Without it, in all."_qs.arg(propertyWords().join(u", "_qs)),
        u"PROPERTY"_qs, u"All"_qs);
}

QCommandLineOption caseOption()
{
    return QCommandLineOption(u"case"_qs, u"Tells capital letters from small ones."_qs);
}

/**
 * What is wrong with a text as what to look for. A search by a broken expression finds nothing and
 * says nothing, so that it is told here.
 */
QString textError(const TVLCollectionMetaData &search)
{
    const QString &text = search.mSearchText;
    if (text.isEmpty())
        return u"the text to look for is empty"_qs;
    if (search.mSearchOperator != TVL::RegExpOperator)
        return {};
    const QRegExp expression(text, search.mCaseSensitivity, QRegExp::RegExp2);
    return expression.isValid()
        ? QString()
        : u"'%1' is no regular expression: %2"_qs.arg(text, expression.errorString());
}

/** Takes what is to be looked for from a command line; empty, or what is wrong with that. */
QString takeSearch(const QCommandLineParser &parser, TVLCollectionMetaData *search)
{
    search->mType = TVL::SavedSearchCollection;
    search->mSearchText = parser.positionalArguments().last();
    search->mCaseSensitivity = parser.isSet(caseOption()) ? Qt::CaseSensitive : Qt::CaseInsensitive;
    const QString searchOperator = parser.value(operatorOption());
    if (!takeWord(Operators, searchOperator, &search->mSearchOperator))
        return wordError(u"operator"_qs, searchOperator, wordsOf(Operators));
    const QString property = parser.value(propertyOption());
    if (!takeWord(TVLPropertyWords, property, &search->mSearchProperty)
        && !takeWord(FurtherProperties, property, &search->mSearchProperty))
        return wordError(u"property"_qs, property, propertyWords());
    return textError(*search);
}

QString matchLine(const TVLProjectNode *node)
{
    const QString title =
        node->mTitle.isEmpty() ? TVLProjectModel::trUntitledTitle() : node->mTitle;
    return oneLine(QString::number(node->mId) + u"  "_qs + title);
}

QJsonObject itemToJson(const TVLProjectNode *node)
{
    return {{u"id"_qs, idOrNull(node->mId)},
            {u"uuid"_qs, toJson(node->mUuid)},
            {u"title"_qs, node->mTitle}};
}

void writeJson(const QList<const TVLProjectNode *> &found, Console *console)
{
    QJsonArray array;
    for (const TVLProjectNode *node : found)
        array.append(itemToJson(node));
    console->write(QJsonDocument(array).toJson());
}

/** The items that a search finds, in the order of the binder. */
QList<const TVLProjectNode *> find(const TVLProjectModel &model,
                                   const TVLCollectionMetaData &search)
{
    QList<const TVLProjectNode *> found;
    const QModelIndexList indexes = model.sortIndexesHash(model.collectionIndexes(search, {}));
    for (const QModelIndex &index : indexes)
        found.append(model.projectNode(index));
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
            u"projects of format version 23 can't be searched yet: '%1'"_qs.arg(path));
    const std::unique_ptr<TVLProjectModel> model = openProject(path, &error);
    if (!model)
        return console->fail(error);

    const QList<const TVLProjectNode *> found = find(*model, search);
    if (wantsJson(parser)) {
        writeJson(found, console);
        return ExitStatus::Done;
    }
    for (const TVLProjectNode *node : found)
        console->writeLine(matchLine(node));
    return ExitStatus::Done;
}

} // namespace

Command searchCommand()
{
    return {u"search"_qs,
            u"Finds items by their titles, texts and what else is known of them."_qs,
            {projectArgument(), {u"TEXT"_qs, u"What to look for."_qs}},
            {operatorOption(), propertyOption(), caseOption(), jsonOption()},
            runSearch};
}
