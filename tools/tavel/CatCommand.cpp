#include "Command.h"
#include "ItemDocuments.h"
#include "ItemFinder.h"
#include "ProjectOpener.h"

#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include <QCommandLineParser>

using namespace Qt::StringLiterals;

namespace {

QCommandLineOption notesOption()
{
    return QCommandLineOption(u"notes"_s, u"The item's notes instead of its text."_s);
}

QCommandLineOption synopsisOption()
{
    return QCommandLineOption(u"synopsis"_s, u"The item's synopsis instead of its text."_s);
}

TVL::DocumentType wantedText(const QCommandLineParser &parser)
{
    if (parser.isSet(notesOption()))
        return TVL::NotesText;
    return parser.isSet(synopsisOption()) ? TVL::SynopsisText : TVL::MainText;
}

ExitStatus runCat(const QCommandLineParser &parser, Console *console)
{
    const QStringList arguments = parser.positionalArguments();
    const QString &name = arguments.last();
    const QString &path = arguments.at(arguments.size() - 2);
    if (parser.isSet(notesOption()) && parser.isSet(synopsisOption()))
        return console->refuse(u"give --notes or --synopsis, not both"_s);

    QString error;
    const std::unique_ptr<TVLProjectModel> model = openToRead(path, &error);
    if (!model)
        return console->fail(error);
    TVLProjectNode *node = findItem(*model, name);
    if (!node)
        return console->fail(u"there is no item '%1'"_s.arg(name));
    const TVL::DocumentType type = wantedText(parser);
    if (type == TVL::MainText && !node->canHaveText())
        return console->fail(u"'%1' has no text of its own"_s.arg(node->mTitle));

    const auto document = readItemText(model->path().absolutePath(), node, type, &error);
    if (!document)
        return console->fail(oneLine(error));
    console->write(plainTextOf(*document));
    return ExitStatus::Done;
}

} // namespace

Command catCommand()
{
    return {u"cat"_s,
            u"Writes an item's text as plain text."_s,
            {projectArgument(), itemArgument()},
            {notesOption(), synopsisOption()},
            runCat};
}
