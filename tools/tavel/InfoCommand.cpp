#include "Command.h"
#include "ItemDocuments.h"
#include "ItemTexts.h"
#include "ProjectOpener.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace {

constexpr int TypeCount = TVL::Other + 1;
using TypeCounts = std::array<int, TypeCount>;

TypeCounts countTypes(const TVLProjectModel &model)
{
    TypeCounts counts{};
    tvlForEachNode(model.binderRoot(), [&counts](const TVLProjectNode *node) {
        ++counts.at(std::size_t(node->mNodeType));
    });
    return counts;
}

QString projectPath(const TVLProjectModel &model)
{
    return model.path().absolutePath();
}

/** The texts of a project taken together. */
struct TextCounts
{
    TextLength all;
    TextLength draft; ///< Of what lies in the Draft folder.
    int unreadable = 0; ///< Texts that can't be read and so aren't counted.
};

TextCounts countTexts(const TVLProjectModel &model)
{
    TextCounts counts;
    const QString path = projectPath(model);
    tvlForEachNode(model.binderRoot(), [&](TVLProjectNode *node) {
        if (!node->canHaveText())
            return;
        QString error;
        const auto document = readItemText(path, node, TVL::MainText, &error);
        if (!document) {
            ++counts.unreadable;
            return;
        }
        const TextLength length = lengthOf(*document);
        counts.all += length;
        if (model.draftContains(model.createIndex(node)))
            counts.draft += length;
    });
    return counts;
}

QString colorName(const TVLLabel &label)
{
    return label.mColor.isValid() ? label.mColor.name() : QString();
}

QJsonObject toJson(const TVLProjectModel &model)
{
    QJsonObject counts;
    const TypeCounts typeCounts = countTypes(model);
    for (int type = 0; type < TypeCount; ++type)
        counts.insert(TVL::toString(TVL::NodeType(type)), typeCounts.at(std::size_t(type)));

    QJsonArray labels;
    for (const TVLLabel &label : model.labels())
        labels.append(QJsonObject{{u"id"_qs, label.mId},
                                  {u"title"_qs, label.mTitle},
                                  {u"color"_qs, textOrNull(colorName(label))}});
    QJsonArray statusItems;
    for (const TVLStatusItem &item : model.statusItems())
        statusItems.append(QJsonObject{{u"id"_qs, item.mId}, {u"title"_qs, item.mTitle}});
    QJsonArray collections;
    for (const TVLCollectionMetaData &collection : model.collections())
        collections.append(QJsonObject{{u"title"_qs, collection.mTitle},
                                       {u"kind"_qs, TVL::toString(collection.mType)}});

    const TextCounts texts = countTexts(model);
    const TVLProjectInfo info = model.info();
    return {
        {u"name"_qs, model.name()},
        {u"path"_qs, projectPath(model)},
        {u"formatVersion"_qs, int(model.formatVersion())},
        {u"binderVersion"_qs, int(info.mBinderVersion)},
        {u"binderVersionText"_qs, info.mVersion},
        {u"items"_qs, model.totalNodesCount()},
        {u"counts"_qs, counts},
        {u"words"_qs, texts.all.words},
        {u"characters"_qs, texts.all.characters},
        {u"draftWords"_qs, texts.draft.words},
        {u"draftCharacters"_qs, texts.draft.characters},
        {u"unreadableTexts"_qs, texts.unreadable},
        {u"labels"_qs, labels},
        {u"statusItems"_qs, statusItems},
        {u"collections"_qs, collections},
        {u"save"_qs,
         QJsonObject{{u"device"_qs, textOrNull(info.mDevice)},
                     {u"time"_qs, ::toJson(info.mModified)},
                     {u"id"_qs, ::toJson(info.mModId)}}},
        {u"locked"_qs, TVLProjectFolderFormat::lockExists(projectPath(model))},
    };
}

QString toText(const QJsonValue &value)
{
    return value.isNull() ? u"unknown"_qs : value.toString();
}

QString inAllAndDraft(qint64 all, qint64 draft)
{
    return u"%1, %2 of them in the draft"_qs.arg(all).arg(draft);
}

/** The lines of the text form: what is told, and what is told of it. */
QList<QPair<QString, QString>> toLines(const TVLProjectModel &model)
{
    const TVLProjectInfo info = model.info();
    QList<QPair<QString, QString>> lines{
        {u"Name"_qs, model.name()},
        {u"Path"_qs, projectPath(model)},
        {u"Format version"_qs, QString::number(model.formatVersion())},
        {u"Binder version"_qs, u"%1 (%2)"_qs.arg(info.mBinderVersion).arg(info.mVersion)},
        {u"Items"_qs, QString::number(model.totalNodesCount())},
    };
    const TypeCounts counts = countTypes(model);
    for (int type = 0; type < TypeCount; ++type) {
        if (const int count = counts.at(std::size_t(type)))
            lines.append({u"  "_qs + TVL::toString(TVL::NodeType(type)), QString::number(count)});
    }
    const TextCounts texts = countTexts(model);
    lines.append({u"Words"_qs, inAllAndDraft(texts.all.words, texts.draft.words)});
    lines.append({u"Characters"_qs, inAllAndDraft(texts.all.characters, texts.draft.characters)});
    if (texts.unreadable > 0)
        lines.append({u"Unreadable texts"_qs, QString::number(texts.unreadable)});
    for (const TVLLabel &label : model.labels())
        lines.append({u"Label %1"_qs.arg(label.mId),
                      u"%1 %2"_qs.arg(label.mTitle, colorName(label)).trimmed()});
    for (const TVLStatusItem &item : model.statusItems())
        lines.append({u"Status %1"_qs.arg(item.mId), item.mTitle});
    for (const TVLCollectionMetaData &collection : model.collections())
        lines.append({u"Collection"_qs,
                      u"%1 (%2)"_qs.arg(collection.mTitle, TVL::toString(collection.mType))});
    lines.append({u"Saved by"_qs, toText(textOrNull(info.mDevice))});
    lines.append({u"Saved at"_qs, toText(::toJson(info.mModified))});
    lines.append({u"Save"_qs, toText(::toJson(info.mModId))});
    const bool isLocked = TVLProjectFolderFormat::lockExists(projectPath(model));
    lines.append({u"Locked"_qs, isLocked ? u"yes"_qs : u"no"_qs});
    return lines;
}

ExitStatus run(const QCommandLineParser &parser, Console *console)
{
    QString error;
    const std::unique_ptr<TVLProjectModel> model =
        openProject(parser.positionalArguments().last(), &error);
    if (!model)
        return console->fail(error);
    if (wantsJson(parser)) {
        console->write(QJsonDocument(toJson(*model)).toJson());
        return ExitStatus::Done;
    }
    for (const auto &[what, text] : toLines(*model))
        console->writeLine(u"%1 %2"_qs.arg(what + u':', -17).arg(oneLine(text)));
    return ExitStatus::Done;
}

} // namespace

Command infoCommand()
{
    return {u"info"_qs,
            u"Tells what a project is made of."_qs,
            {projectArgument()},
            {jsonOption()},
            run};
}
