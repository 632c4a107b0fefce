#include "Command.h"
#include "ItemDocuments.h"
#include "ItemTexts.h"
#include "ProjectOpener.h"

#include "TUuid.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include <QCommandLineParser>
#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/**
 * Walks over all items, calling @p enter before and @p leave behind the children of each, with its
 * depth: 0 at the top. It doesn't recurse, so that a tree may be of any depth.
 */
template <typename Enter, typename Leave>
void walk(TVLProjectNode *root, Enter enter, Leave leave)
{
    struct Step
    {
        TVLProjectNode *node;
        qsizetype nextChild;
    };
    QList<Step> way{{root, 0}};
    while (!way.isEmpty()) {
        Step &step = way.last();
        const qsizetype depth = way.size() - 1;
        if (step.nextChild < step.node->mChildren.size()) {
            TVLProjectNode *child = step.node->mChildren.at(step.nextChild);
            ++step.nextChild;
            enter(child, depth);
            way.append({child, 0});
        } else {
            if (depth > 0)
                leave(step.node, depth - 1);
            way.removeLast();
        }
    }
}

/** From some depth on the indentation of items grows no further. */
constexpr qsizetype DeepestIndent = 32;

/** The indentation of an item in JSON. */
QByteArray treeIndent(qsizetype depth)
{
    return QByteArray(2 * (1 + qMin(depth, DeepestIndent)), ' ');
}

/** What stands in front of an item in the outline. One that is too deep to be indented tells its
 * depth. */
QString lineIndent(qsizetype depth)
{
    const QString blanks(2 * qMin(depth, DeepestIndent), u' ');
    return depth > DeepestIndent ? blanks + u"(depth %1) "_s.arg(depth) : blanks;
}

/** Writes the outline of one project. */
class OutlineWriter
{
public:
    OutlineWriter(const TVLProjectModel &model, Console *console);

    void writeText();
    void writeJson();

private:
    [[nodiscard]] QString textOf(TVLProjectNode *node) const;
    [[nodiscard]] QByteArray jsonOf(TVLProjectNode *node) const;
    [[nodiscard]] std::optional<qint64> wordsOf(TVLProjectNode *node) const;

    const TVLProjectModel &mModel;
    QString mProjectPath;
    Console *mConsole;
    QHash<int, QString> mLabels;
    QHash<int, QString> mStatusItems;
};

OutlineWriter::OutlineWriter(const TVLProjectModel &model, Console *console)
    : mModel(model)
    , mProjectPath(model.path().absolutePath())
    , mConsole(console)
    , mLabels(titlesById(model.labels()))
    , mStatusItems(titlesById(model.statusItems()))
{
}

/** The words of an item's text; none for an item without one, or with one that can't be read. */
std::optional<qint64> OutlineWriter::wordsOf(TVLProjectNode *node) const
{
    QString error;
    const auto document =
        node->canHaveText() ? readItemText(mProjectPath, node, TVL::MainText, &error) : nullptr;
    return document ? std::optional(lengthOf(*document).words) : std::nullopt;
}

QString OutlineWriter::textOf(TVLProjectNode *node) const
{
    const QString identity = node->mId < 0 ? TUuid::toStringNoBraces(node->mUuid, true)
                                           : u'#' + QString::number(node->mId);
    QString text = u'[' + TVL::wordOf(node->mNodeType) + u"] "_s + shownTitle(node) + u" ("_s
        + identity + u')';
    if (mLabels.contains(node->mLabelId))
        text += u" [label: "_s + mLabels.value(node->mLabelId) + u']';
    if (mStatusItems.contains(node->mStatusId))
        text += u" [status: "_s + mStatusItems.value(node->mStatusId) + u']';
    if (const qint64 words = wordsOf(node).value_or(0); words > 0)
        text += u" [words: "_s + QString::number(words) + u']';
    return oneLine(text);
}

void OutlineWriter::writeText()
{
    walk(
        mModel.binderRoot(),
        [this](TVLProjectNode *node, qsizetype depth) {
            mConsole->writeLine(lineIndent(depth) + textOf(node));
        },
        [](const TVLProjectNode *, qsizetype) {});
}

QByteArray OutlineWriter::jsonOf(TVLProjectNode *node) const
{
    const std::optional<qint64> words = wordsOf(node);
    const QJsonObject object{
        {u"id"_s, idOrNull(node->mId)},
        {u"uuid"_s, toJson(node->mUuid)},
        {u"type"_s, TVL::wordOf(node->mNodeType)},
        {u"title"_s, node->mTitle},
        {u"label"_s, textOrNull(mLabels.value(node->mLabelId))},
        {u"status"_s, textOrNull(mStatusItems.value(node->mStatusId))},
        {u"words"_s, words ? QJsonValue(*words) : QJsonValue()},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/*
 * QJsonDocument writes nested values by recursion, and indents each level further, so a deep tree
 * would exhaust the stack or the disk. Here it writes one item at a time, and the nesting is added
 * around it.
 */
void OutlineWriter::writeJson()
{
    // Whether the last thing written was the beginning of a list.
    bool isFirst = true;
    mConsole->write("[");
    walk(
        mModel.binderRoot(),
        [&](TVLProjectNode *node, qsizetype depth) {
            QByteArray item = jsonOf(node);
            item.chop(1);
            mConsole->write((isFirst ? "\n" : ",\n") + treeIndent(depth) + item
                            + ",\"children\":[");
            isFirst = true;
        },
        [&](const TVLProjectNode *node, qsizetype depth) {
            mConsole->write(node->mChildren.isEmpty() ? QByteArray("]}")
                                                      : '\n' + treeIndent(depth) + "]}");
            isFirst = false;
        });
    mConsole->write("\n]\n");
}

ExitStatus runOutline(const QCommandLineParser &parser, Console *console)
{
    QString error;
    const std::unique_ptr<TVLProjectModel> model =
        openToRead(parser.positionalArguments().last(), &error);
    if (!model)
        return console->fail(error);
    OutlineWriter writer(*model, console);
    if (wantsJson(parser))
        writer.writeJson();
    else
        writer.writeText();
    return ExitStatus::Done;
}

} // namespace

Command outlineCommand()
{
    return {u"outline"_s,
            u"Shows the tree of a project's items."_s,
            {projectArgument()},
            {jsonOption()},
            runOutline};
}
